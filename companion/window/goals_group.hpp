#pragma once

#include "companion/window/folding_row.hpp"
#include "companion/window/session.hpp"
#include "companion/window/widgets.hpp"

namespace companion::window {

/// The two goals, and how far today and the month have come.
class GoalsGroup {
 public:
  explicit GoalsGroup(Session& session);

  [[nodiscard]] AdwPreferencesGroup* group() const { return group_; }
  void update(const State& state);
  /// Stores at once what was changed last.
  void settle();

 private:
  struct Goal {
    GtkWidget* ring = nullptr;
    GtkWidget* amount = nullptr;
    FoldingRow row;
  };

  Goal makeGoal(const std::string& title, double step);
  void show(const Goal& goal, double earned, double amount, const State& state);
  void goalChanged();

  Session& session_;
  AdwPreferencesGroup* group_;
  Goal daily_;
  Goal monthly_;
  guint timer_ = 0;
  bool isShowing_ = false;
};

}  // namespace companion::window
