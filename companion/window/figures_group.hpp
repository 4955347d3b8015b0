#pragma once

#include <vector>

#include "companion/window/figures.hpp"
#include "companion/window/folding_row.hpp"
#include "companion/window/model.hpp"
#include "companion/window/widgets.hpp"

namespace companion::window {

/// All figures that the widget knows, in lists.
class FiguresGroups {
 public:
  FiguresGroups();

  /// In the order in which they stand on the page.
  [[nodiscard]] const std::vector<AdwPreferencesGroup*>& groups() const { return groups_; }
  void update(const State& state);

 private:
  struct Row {
    GtkWidget* value;
    GtkWidget* change;
    FoldingRow row;
  };

  void makeRow(AdwPreferencesGroup* group, const std::string& title);
  static void show(const Row& row, const Figure& figure);

  std::vector<AdwPreferencesGroup*> groups_;
  std::vector<Row> rows_;
};

}  // namespace companion::window
