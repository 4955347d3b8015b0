#pragma once

#include <functional>

#include "companion/history/update.hpp"
#include "companion/window/model.hpp"

namespace companion::window {

/// Brings the days behind the figures, those at hand first.
class HistoryFeed {
 public:
  HistoryFeed(State& state, std::function<void()> changed);

  /// Reads the days at hand, unless there are some; then asks the service when they are old.
  void load();
  /// Asks the service, unless it did so within the last half hour.
  void update();
  /// What is under way is of another user.
  void forget();

 private:
  void run(std::function<HistoryAnswer()> work);
  void take(const HistoryAnswer& answer);

  State& state_;
  std::function<void()> changed_;
  unsigned user_ = 0;
};

}  // namespace companion::window
