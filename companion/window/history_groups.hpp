#pragma once

#include <array>
#include <memory>

#include "companion/window/folding_row.hpp"
#include "companion/window/history_chart.hpp"
#include "companion/window/model.hpp"

namespace companion::window {

/// The days behind the figures: their chart by weeks or months, its sums, and the same as a table.
class HistoryGroups {
 public:
  HistoryGroups();
  HistoryGroups(const HistoryGroups&) = delete;
  HistoryGroups& operator=(const HistoryGroups&) = delete;

  /// The chart, and below it the list.
  [[nodiscard]] std::array<AdwPreferencesGroup*, 2> groups() const { return {group_, list_}; }
  void update(const State& state);

 private:
  GtkWidget* makePeriods();
  void makeTable();
  void redraw();
  void showFigures();
  void fillTable();

  AdwPreferencesGroup* group_;
  AdwPreferencesGroup* list_;
  HistoryChart chart_;
  GtkWidget* months_ = nullptr;
  GtkWidget* table_ = nullptr;
  GtkWidget* caption_ = nullptr;
  std::vector<GtkWidget*> figureRows_;
  std::vector<GtkWidget*> tableRows_;
  std::shared_ptr<const History> history_;
  velmora::Objectives goals_;
  ChartModel model_;
};

}  // namespace companion::window
