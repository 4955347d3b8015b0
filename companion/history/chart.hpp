#pragma once

#include <cstddef>
#include <optional>

#include "companion/history/chart_model.hpp"
#include "platform/views/draw_list.hpp"
#include "platform/views/views.hpp"

namespace companion {

/// How a chart is to look. Lengths are in points.
struct ChartStyle {
  double width = 720;
  double height = 400;
  double scale = 1;  ///< device pixels per point
  bool dark = false;
  bool highContrast = false;
  bool rightToLeft = false;
  double textScale = 1;                    ///< size of the user's texts over the usual one
  std::optional<std::size_t> highlighted;  ///< the bar whose figures are shown instead of the sums
  bool hasFigures = true;  ///< below; else the model's figures and caption are shown elsewhere
  bool hasGround = true;   ///< else it is drawn on whatever is there
};

/// The chart as a view, to be laid out in the size that the style says.
platform::View historyChart(const ChartModel& model, const ChartStyle& style);

/// Lays the chart out; platform::paint draws the list into any Cairo context whose unit is one
/// point, platform::paintPng and its relatives into files. `accessibility` holds the phrases.
platform::DrawList layOutChart(const ChartModel& model, const ChartStyle& style,
                               const platform::Typesetter& typesetter);

/// The height at which the bars are as high as they look best at that width and text scale.
double idealChartHeight(const ChartModel& model, const ChartStyle& style,
                        const platform::Typesetter& typesetter);

/// The bar at a place, from the left edge of the chart; absent beside the bars.
std::optional<std::size_t> barAt(const ChartModel& model, const ChartStyle& style, double x);

}  // namespace companion
