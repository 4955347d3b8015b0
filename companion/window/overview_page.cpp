#include "companion/window/overview_page.hpp"

namespace companion::window {

OverviewPage::OverviewPage(Session& session, DesktopHost& host)
    : page_(adw_preferences_page_new()),
      notice_(session),
      account_(session),
      goals_(session),
      desktop_(host),
      figures_(session) {
  auto* page = ADW_PREFERENCES_PAGE(page_);
  for (auto* group : {notice_.group(), account_.group(), goals_.group(), desktop_.group()})
    adw_preferences_page_add(page, group);
  for (auto* group : figures_.groups()) adw_preferences_page_add(page, group);
  desktop_.update();
}

void OverviewPage::update(const State& state) {
  notice_.update(state);
  account_.update(state);
  goals_.update(state);
  figures_.update(state);
}

}  // namespace companion::window
