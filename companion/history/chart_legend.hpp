#pragma once

#include "companion/history/chart.hpp"

namespace companion {

/// What the marks of a chart mean, as far as it has them.
platform::View chartLegend(const ChartModel& model, const ChartStyle& style);

}  // namespace companion
