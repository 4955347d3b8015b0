#include "companion/window/overview_page.hpp"

#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedString;

OverviewPage::OverviewPage(Session& session, DesktopHost& host)
    : session_(session),
      host_(host),
      stack_(ADW_VIEW_STACK(adw_view_stack_new())),
      earningsPlace_(
          addView("earnings", localizedString("Earnings"), "com.brenvik.velmora-symbolic")),
      widgetPlace_(addView("widget", localizedString("Widget"), "video-display-symbolic")),
      accountPlace_(addView("account", localizedString("Account"), "avatar-default-symbolic")) {
  connect(stack_, "notify::visible-child", [this] { showView(); });
  showView();
}

GtkWidget* OverviewPage::addView(const char* name, const std::string& title, const char* icon) {
  GtkWidget* place = adw_bin_new();
  auto* page = adw_view_stack_add_titled(stack_, place, name, title.c_str());
  adw_view_stack_page_set_icon_name(page, icon);
  return place;
}

void OverviewPage::showView() {
  GtkWidget* shown = adw_view_stack_get_visible_child(stack_);
  if (shown == earningsPlace_ && !earnings_)
    adw_bin_set_child(ADW_BIN(shown), earnings_.emplace(session_).widget());
  if (shown == widgetPlace_ && !widget_)
    adw_bin_set_child(ADW_BIN(shown), widget_.emplace(host_).widget());
  if (shown == accountPlace_ && !account_)
    adw_bin_set_child(ADW_BIN(shown), account_.emplace(session_).widget());
  update(session_.state());
  hideOthers(GTK_WIDGET(stack_), shown);
}

void OverviewPage::update(const State& state) {
  if (earnings_) earnings_->update(state);
  if (widget_) widget_->update(state);
  if (account_) account_->update(state);
}

void OverviewPage::updateHost() {
  if (widget_) widget_->updateHost();
}

void OverviewPage::redraw() {
  if (widget_) widget_->redraw();
}

void OverviewPage::settle() {
  if (account_) account_->settle();
}

}  // namespace companion::window
