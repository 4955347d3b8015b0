#pragma once

#include <optional>
#include <vector>

#include "companion/history/chart_model.hpp"

namespace companion {

/// The same day a year before; of a leap day, 28 February.
Day yearBefore(Day day);

/// What the days from the first to the last earned; absent unless all of them are known and the
/// account had begun.
std::optional<double> knownEarnings(const History& history, Day first, Day last);

/// The bars of a period without their texts. A month counts once all of its days are known, save
/// the last one, which may be short.
std::vector<ChartBar> chartBars(const History& history, ChartPeriod period);

}  // namespace companion
