#pragma once

#include "companion/history/chart.hpp"

namespace companion {

/// The bars with their lines and amounts; as wide as the chart within its inset, as high as it may.
platform::View chartPlot(const ChartModel& model, const ChartStyle& style);

/// The names below them.
platform::View chartNames(const ChartModel& model, const ChartStyle& style);

}  // namespace companion
