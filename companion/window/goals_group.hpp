#pragma once

#include "companion/window/goal_row.hpp"
#include "companion/window/session.hpp"
#include "companion/window/widgets.hpp"

namespace companion::window {

/// The two goals.
class GoalsGroup {
 public:
  explicit GoalsGroup(Session& session);

  [[nodiscard]] AdwPreferencesGroup* group() const { return group_; }
  void update(const State& state);
  /// Stores at once what was typed last.
  void settle();

 private:
  AdwPreferencesGroup* group_;
  GoalRow daily_;
  GoalRow monthly_;
};

}  // namespace companion::window
