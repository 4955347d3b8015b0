#pragma once

#include <string>

#include "VelmoraWidget/Reports.hpp"
#include "companion/history/history.hpp"

namespace companion {

/// The days from the first to the last, as a daily report tells them. A day without a row has
/// zeros, a row of another day is left out, the later of two rows for a day counts, and what is no
/// finite number is 0.
History historyFrom(const velmora::ReportResponse& report, const std::string& account, Day first,
                    Day last, platform::Instant fetchedAt);

}  // namespace companion
