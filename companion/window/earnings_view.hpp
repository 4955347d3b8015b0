#pragma once

#include "companion/window/figures_group.hpp"
#include "companion/window/goal_tile.hpp"
#include "companion/window/history_groups.hpp"
#include "companion/window/notice_group.hpp"

namespace companion::window {

/// What was earned: what is wrong right now, today and the month, the days, all figures.
class EarningsView {
 public:
  explicit EarningsView(Session& session);

  [[nodiscard]] GtkWidget* widget() const { return page_; }
  void update(const State& state);

 private:
  AdwPreferencesGroup* makeTiles();

  GtkWidget* page_;
  NoticeGroup notices_;
  GoalTile today_;
  GoalTile month_;
  GtkWidget* refreshed_ = nullptr;
  HistoryGroups history_;
  FiguresGroups figures_;
};

}  // namespace companion::window
