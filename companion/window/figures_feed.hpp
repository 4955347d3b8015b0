#pragma once

#include <functional>

#include "companion/window/model.hpp"

namespace companion::window {

/// Fetches figures, one refresh at a time.
class FiguresFeed {
 public:
  /// `refreshed` is called after each refresh; the state tells how it went, and what was stored is
  /// to be read again.
  FiguresFeed(State& state, std::function<void()> changed, std::function<void()> refreshed);

  void refresh();
  /// What is under way is of another user.
  void forget();

 private:
  struct Fetched;

  void take(const Fetched& fetched);

  State& state_;
  std::function<void()> changed_;
  std::function<void()> refreshed_;
  unsigned user_ = 0;
};

}  // namespace companion::window
