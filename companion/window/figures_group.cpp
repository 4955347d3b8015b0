#include "companion/window/figures_group.hpp"

#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedString;

namespace {

GtkWidget* figureLabel(const char* cssClass) {
  GtkWidget* label = gtk_label_new("");
  gtk_widget_add_css_class(label, "numeric");
  gtk_widget_add_css_class(label, cssClass);
  return label;
}

GtkWidget* endColumn(GtkWidget* value, GtkWidget* change) {
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 2);
  gtk_widget_set_valign(box, GTK_ALIGN_CENTER);
  for (auto* label : {value, change}) {
    gtk_widget_set_halign(label, GTK_ALIGN_END);
    gtk_box_append(GTK_BOX(box), label);
  }
  return box;
}

}  // namespace

FiguresGroups::FiguresGroups(Session& session)
    : refresh_(textButton(localizedString("_Refresh Now"), [&session] { session.refresh(); })),
      spinner_(gtk_spinner_new()) {
  makeRows(figureGroups(velmora::VelmoraSnapshot::sample()));
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 12);
  setAccessibleLabel(spinner_, localizedString("Refreshing"));
  gtk_box_append(GTK_BOX(box), spinner_);
  gtk_box_append(GTK_BOX(box), refresh_);
  adw_preferences_group_set_header_suffix(groups_.front(), box);
}

void FiguresGroups::makeRows(const std::vector<FigureGroup>& groups) {
  for (const auto& group : groups) {
    groups_.push_back(preferencesGroup(group.title, ""));
    for (const auto& figure : group.figures) {
      const Row row{actionRow(figure.title, ""), figureLabel("heading"), figureLabel("caption")};
      adw_action_row_add_suffix(ADW_ACTION_ROW(row.row), endColumn(row.value, row.change));
      adw_preferences_group_add(groups_.back(), row.row);
      rows_.push_back(row);
    }
  }
}

void FiguresGroups::show(const Row& row, const Figure& figure) {
  gtk_label_set_text(GTK_LABEL(row.value), figure.value.c_str());
  setSubtitle(row.row, figure.note);
  gtk_widget_set_visible(row.change, figure.change.has_value());
  gtk_label_set_text(GTK_LABEL(row.change), figure.change.value_or("").c_str());
  gtk_widget_remove_css_class(row.change, figure.isUp ? "error" : "success");
  gtk_widget_add_css_class(row.change, figure.isUp ? "success" : "error");
  setAccessibleLabel(row.change, figure.spokenChange);
  std::string spoken = figure.value;
  for (const auto& part : {figure.spokenChange, figure.note})
    if (!part.empty()) spoken += ", " + part;
  setAccessibleDescription(row.row, spoken);
}

void FiguresGroups::update(const State& state) {
  const auto& snapshot = state.status.snapshot;
  const auto heading = snapshot             ? refreshedText(state)
                       : state.isRefreshing ? localizedString("Fetching your figures…")
                                            : localizedString("There are no figures yet.");
  adw_preferences_group_set_description(groups_.front(), escaped(heading).c_str());
  gtk_widget_set_sensitive(refresh_, !state.isRefreshing);
  gtk_spinner_set_spinning(GTK_SPINNER(spinner_), state.isRefreshing);
  gtk_widget_set_visible(spinner_, state.isRefreshing);
  std::size_t next = 0;
  for (const auto& group : figureGroups(snapshot.value_or(velmora::VelmoraSnapshot::sample())))
    for (const auto& figure : group.figures)
      show(rows_[next++], snapshot ? figure : Figure{.value = "—"});
}

}  // namespace companion::window
