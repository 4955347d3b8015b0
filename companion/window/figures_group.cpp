#include "companion/window/figures_group.hpp"

namespace companion::window {

namespace {

GtkWidget* figureLabel(const char* cssClass) {
  GtkWidget* label = gtk_label_new("");
  gtk_widget_add_css_class(label, "numeric");
  gtk_widget_add_css_class(label, cssClass);
  gtk_widget_set_halign(label, GTK_ALIGN_END);
  return label;
}

const char* styleOf(Trend trend) {
  if (trend == Trend::level) return "dim-label";
  return trend == Trend::up ? "success" : "error";
}

}  // namespace

FiguresGroups::FiguresGroups() {
  for (const auto& group : figureGroups(velmora::VelmoraSnapshot::sample())) {
    groups_.push_back(preferencesGroup(group.title, ""));
    for (const auto& figure : group.figures) makeRow(groups_.back(), figure.title);
  }
}

void FiguresGroups::makeRow(AdwPreferencesGroup* group, const std::string& title) {
  Row row{figureLabel("heading"), figureLabel("caption"), {}};
  GtkWidget* column = gtk_box_new(GTK_ORIENTATION_VERTICAL, 2);
  gtk_widget_set_valign(column, GTK_ALIGN_CENTER);
  gtk_box_append(GTK_BOX(column), row.value);
  gtk_box_append(GTK_BOX(column), row.change);
  row.row = FoldingRow(nullptr, title, column);
  adw_preferences_group_add(group, row.row.row);
  rows_.push_back(row);
}

void FiguresGroups::show(const Row& row, const Figure& figure) {
  gtk_label_set_text(GTK_LABEL(row.value), figure.value.c_str());
  row.row.setSubtitle(figure.note);
  gtk_widget_set_visible(row.change, figure.change.has_value());
  gtk_label_set_text(GTK_LABEL(row.change), figure.change.value_or("").c_str());
  for (const auto trend : {Trend::up, Trend::level, Trend::down})
    gtk_widget_remove_css_class(row.change, styleOf(trend));
  gtk_widget_add_css_class(row.change, styleOf(figure.trend));
  setAccessibleLabel(row.change, figure.spokenChange);
  std::string spoken = figure.value;
  for (const auto& part : {figure.spokenChange, figure.note})
    if (!part.empty()) spoken += ", " + part;
  setAccessibleDescription(row.row.row, spoken);
}

void FiguresGroups::update(const State& state) {
  const auto* figures = figuresOf(state);
  for (auto* group : groups_)
    gtk_widget_set_visible(GTK_WIDGET(group), figures == nullptr ? FALSE : TRUE);
  if (figures == nullptr) return;
  std::size_t next = 0;
  for (const auto& group : figureGroups(*figures))
    for (const auto& figure : group.figures) show(rows_[next++], figure);
}

}  // namespace companion::window
