#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "companion/history/chart.hpp"
#include "companion/history/chart_axis.hpp"

namespace companion {

/// Where the columns of a chart stand, in points from its leading edge. It does not depend on the
/// fonts that are found, so that a place can be told without drawing.
struct ChartColumns {
  double left = 0;   ///< of the first column
  double slot = 0;   ///< of one bar, with the room around it
  double right = 0;  ///< of the last column
};

/// The room around the chart.
inline constexpr double chartInset = 16;

/// How wide a text will be at most, whatever font is found.
double widestText(const std::string& text, double fontSize);

/// The size of the texts along the axes.
double axisFontSize(const ChartStyle& style);

/// Whether the goal's line is drawn; one far above every bar would leave nothing of them.
bool showsGoal(const ChartModel& model);

ChartAxis chartAxis(const ChartModel& model);
std::vector<std::string> axisLabels(const ChartModel& model, const ChartAxis& axis);

ChartColumns chartColumns(const ChartModel& model, const ChartStyle& style);

/// The bars that have a label below them: every so many, as wide as they are.
struct ChartLabels {
  std::size_t every = 1;
  bool isShort = false;
};
ChartLabels chartLabels(const ChartModel& model, const ChartStyle& style);

}  // namespace companion
