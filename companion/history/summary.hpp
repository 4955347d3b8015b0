#pragma once

#include <optional>
#include <span>

#include "companion/history/history.hpp"

namespace companion {

/// What the days of a stretch earned.
double sumOf(std::span<const HistoryDay> days);

/// Their mean; absent without a day.
std::optional<double> meanOf(std::span<const HistoryDay> days);

/// The first day that may still grow when the report was made: the last one, and the one before
/// as long as nothing has happened on the last, which may not have begun where the account is.
Day firstOpenDay(const History& history);

/// The days without those of a new account's time before it had any event.
std::span<const HistoryDay> daysSinceFirstEvent(const History& history);

/// What the month of the last day may come to: its days so far, and for each that is to come the
/// mean of that weekday in the five weeks before. Of today, whichever is more. Absent while fewer
/// than seven days are over, or when days of the month are not known.
std::optional<double> monthEstimate(const History& history);

}  // namespace companion
