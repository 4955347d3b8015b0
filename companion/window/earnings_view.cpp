#include "companion/window/earnings_view.hpp"

#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedString;

EarningsView::EarningsView(Session& session)
    : page_(adw_preferences_page_new()),
      notices_(session),
      today_(localizedString("Today")),
      month_(localizedString("This month")) {
  auto* page = ADW_PREFERENCES_PAGE(page_);
  gtk_widget_add_css_class(page_, "earnings");
  adw_preferences_page_add(page, notices_.group());
  adw_preferences_page_add(page, makeTiles());
  for (auto* group : history_.groups()) adw_preferences_page_add(page, group);
  for (auto* group : figures_.groups()) adw_preferences_page_add(page, group);
}

/// Side by side, or one above the other in little room.
AdwPreferencesGroup* EarningsView::makeTiles() {
  GtkWidget* tiles = gtk_flow_box_new();
  auto* box = GTK_FLOW_BOX(tiles);
  gtk_flow_box_set_selection_mode(box, GTK_SELECTION_NONE);
  gtk_flow_box_set_max_children_per_line(box, 2);
  gtk_flow_box_set_homogeneous(box, TRUE);
  gtk_flow_box_set_column_spacing(box, 12);
  gtk_flow_box_set_row_spacing(box, 12);
  for (auto* tile : {today_.tile, month_.tile}) {
    gtk_flow_box_append(box, tile);
    gtk_widget_set_focusable(gtk_widget_get_parent(tile), FALSE);
  }
  refreshed_ = gtk_label_new("");
  gtk_label_set_wrap(GTK_LABEL(refreshed_), TRUE);
  gtk_label_set_justify(GTK_LABEL(refreshed_), GTK_JUSTIFY_CENTER);
  gtk_widget_add_css_class(refreshed_, "caption");
  gtk_widget_add_css_class(refreshed_, "dim-label");
  gtk_widget_set_margin_top(refreshed_, 8);
  auto* group = preferencesGroup("", "");
  adw_preferences_group_add(group, tiles);
  adw_preferences_group_add(group, refreshed_);
  return group;
}

void EarningsView::update(const State& state) {
  notices_.update(noticesFor(state));
  const auto& goals = state.status.goals;
  if (const auto* figures = figuresOf(state)) {
    today_.show(figures->today, goals.daily, figures->currency);
    month_.show(figures->monthToDate, goals.monthly, figures->currency);
  } else {
    today_.clear();
    month_.clear();
  }
  gtk_label_set_text(GTK_LABEL(refreshed_), refreshedText(state).c_str());
  history_.update(state);
  figures_.update(state);
}

}  // namespace companion::window
