#include "companion/window/history_groups.hpp"

#include "companion/history/chart_table.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedString;

namespace {

GtkWidget* valueLabel(const std::string& text) {
  GtkWidget* label = gtk_label_new(text.c_str());
  gtk_widget_add_css_class(label, "numeric");
  gtk_widget_add_css_class(label, "heading");
  return label;
}

GtkWidget* card(GtkWidget* child) {
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_widget_add_css_class(box, "card");
  gtk_box_append(GTK_BOX(box), child);
  return box;
}

/// One day or month of the table, its columns named for who hears them one by one.
GtkWidget* tableRow(const ChartTable& table, const std::vector<std::string>& cells) {
  std::string others;
  for (std::size_t i = 2; i < cells.size(); ++i)
    others += (others.empty() ? "" : " · ") + table.columns[i] + ": " + cells[i];
  const FoldingRow row(nullptr, cells[0], valueLabel(cells[1]));
  row.setSubtitle(others);
  setAccessibleDescription(row.row, table.columns[1] + ": " + cells[1] + ", " + others);
  return row.row;
}

}  // namespace

HistoryGroups::HistoryGroups()
    : group_(preferencesGroup(localizedString("History"), "")), list_(preferencesGroup("", "")) {
  adw_preferences_group_set_header_suffix(group_, makePeriods());
  adw_preferences_group_add(group_, card(chart_.widget()));
  makeTable();
  caption_ = gtk_label_new("");
  gtk_label_set_wrap(GTK_LABEL(caption_), TRUE);
  gtk_label_set_xalign(GTK_LABEL(caption_), 0);
  for (const char* cssClass : {"caption", "dim-label", "footnote"})
    gtk_widget_add_css_class(caption_, cssClass);
  adw_preferences_group_add(list_, caption_);
}

GtkWidget* HistoryGroups::makePeriods() {
  GtkWidget* weeks = gtk_toggle_button_new_with_label(localizedString("Weeks").c_str());
  months_ = gtk_toggle_button_new_with_label(localizedString("Months").c_str());
  gtk_toggle_button_set_group(GTK_TOGGLE_BUTTON(months_), GTK_TOGGLE_BUTTON(weeks));
  gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(weeks), TRUE);
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
  gtk_widget_add_css_class(box, "linked");
  gtk_box_append(GTK_BOX(box), weeks);
  gtk_box_append(GTK_BOX(box), months_);
  connect(months_, "toggled", [this] { redraw(); });
  return box;
}

/// Its rows are made when it is unfolded.
void HistoryGroups::makeTable() {
  table_ = adw_expander_row_new();
  adw_preferences_row_set_title(ADW_PREFERENCES_ROW(table_), localizedString("As a table").c_str());
  connect(table_, "notify::expanded", [this] { fillTable(); });
  adw_preferences_group_add(list_, table_);
}

void HistoryGroups::update(const State& state) {
  if (state.history == history_ && state.status.goals == goals_ && !model_.caption.empty()) return;
  history_ = state.history;
  goals_ = state.status.goals;
  redraw();
}

void HistoryGroups::redraw() {
  const bool isMonthly = gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(months_)) != FALSE;
  model_ =
      chartModel(history_ ? *history_ : History{}, goals_, isMonthly ? thirteenMonths : fiveWeeks);
  chart_.show(model_);
  showFigures();
  fillTable();
  for (auto* group : groups())
    gtk_widget_set_visible(GTK_WIDGET(group), model_.bars.empty() ? FALSE : TRUE);
  gtk_label_set_text(GTK_LABEL(caption_), model_.caption.c_str());
}

void HistoryGroups::showFigures() {
  for (auto* row : figureRows_) adw_preferences_group_remove(list_, row);
  figureRows_.clear();
  const Reference<GtkWidget> table(GTK_WIDGET(g_object_ref(table_)));
  adw_preferences_group_remove(list_, table_);  // it comes last
  for (const auto& [title, value] : model_.figures) {
    const FoldingRow row(nullptr, title, valueLabel(value));
    setAccessibleDescription(row.row, value);
    figureRows_.push_back(row.row);
    adw_preferences_group_add(list_, row.row);
  }
  adw_preferences_group_add(list_, table_);
}

void HistoryGroups::fillTable() {
  for (auto* row : tableRows_) adw_expander_row_remove(ADW_EXPANDER_ROW(table_), row);
  tableRows_.clear();
  if (adw_expander_row_get_expanded(ADW_EXPANDER_ROW(table_)) == FALSE) return;
  const auto table = chartTable(model_);
  for (const auto& cells : table.rows) {
    tableRows_.push_back(tableRow(table, cells));
    adw_expander_row_add_row(ADW_EXPANDER_ROW(table_), tableRows_.back());
  }
}

}  // namespace companion::window
