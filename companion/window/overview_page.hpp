#pragma once

#include "companion/window/account_group.hpp"
#include "companion/window/desktop_group.hpp"
#include "companion/window/figures_group.hpp"
#include "companion/window/goals_group.hpp"
#include "companion/window/notice_group.hpp"

namespace companion::window {

/// Everything for somebody who is signed in, on one scrolling page.
class OverviewPage {
 public:
  OverviewPage(Session& session, DesktopHost& host);

  [[nodiscard]] GtkWidget* widget() const { return page_; }
  void update(const State& state);
  void updateDesktop() { desktop_.update(); }
  void redraw() { desktop_.redraw(); }
  void settle() { goals_.settle(); }

 private:
  GtkWidget* page_;
  NoticeGroup notice_;
  AccountGroup account_;
  GoalsGroup goals_;
  DesktopGroup desktop_;
  FiguresGroups figures_;
};

}  // namespace companion::window
