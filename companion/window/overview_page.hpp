#pragma once

#include <optional>

#include "companion/window/account_view.hpp"
#include "companion/window/earnings_view.hpp"
#include "companion/window/widget_view.hpp"

namespace companion::window {

/// Everything for somebody who is signed in, in three views. A view is made when it is first shown.
class OverviewPage {
 public:
  OverviewPage(Session& session, DesktopHost& host);
  OverviewPage(const OverviewPage&) = delete;
  OverviewPage& operator=(const OverviewPage&) = delete;

  [[nodiscard]] GtkWidget* widget() const { return GTK_WIDGET(stack_); }
  [[nodiscard]] AdwViewStack* stack() const { return stack_; }
  void update(const State& state);
  void updateHost();
  /// What the widget shows may look different now.
  void redraw();
  /// Stores at once what was typed last.
  void settle();

 private:
  GtkWidget* addView(const char* name, const std::string& title, const char* icon);
  void showView();

  Session& session_;
  DesktopHost& host_;
  AdwViewStack* stack_;
  GtkWidget* earningsPlace_;
  GtkWidget* widgetPlace_;
  GtkWidget* accountPlace_;
  std::optional<EarningsView> earnings_;
  std::optional<WidgetView> widget_;
  std::optional<AccountView> account_;
};

}  // namespace companion::window
