#pragma once

#include <functional>

#include "companion/window/model.hpp"

namespace companion::window {

/// Stores the user's goals, one after the other, so that the last ones stay.
class GoalsStore {
 public:
  /// `stored` is called when the last ones are where the widget reads them.
  GoalsStore(State& state, std::function<void()> changed, std::function<void()> stored);

  /// Shown at once; taken back, with a message, when they cannot be stored.
  void store(const velmora::Objectives& goals);
  [[nodiscard]] bool isStoring() const { return isStoring_; }

 private:
  void storeLatest();

  State& state_;
  std::function<void()> changed_;
  std::function<void()> stored_;
  bool isStoring_ = false;
  velmora::Objectives storedGoals_;
};

}  // namespace companion::window
