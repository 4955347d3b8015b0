#pragma once

#include <vector>

#include "companion/window/figures.hpp"
#include "companion/window/session.hpp"
#include "companion/window/widgets.hpp"

namespace companion::window {

/// All figures that the widget knows, when they were fetched, and "Refresh Now".
class FiguresGroups {
 public:
  explicit FiguresGroups(Session& session);

  /// In the order in which they stand on the page.
  [[nodiscard]] const std::vector<AdwPreferencesGroup*>& groups() const { return groups_; }
  void update(const State& state);

 private:
  struct Row {
    GtkWidget* row;
    GtkWidget* value;
    GtkWidget* change;
  };

  void makeRows(const std::vector<FigureGroup>& groups);
  static void show(const Row& row, const Figure& figure);

  GtkWidget* refresh_;
  GtkWidget* spinner_;
  std::vector<AdwPreferencesGroup*> groups_;
  std::vector<Row> rows_;
};

}  // namespace companion::window
