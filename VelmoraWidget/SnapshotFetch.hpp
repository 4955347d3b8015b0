#pragma once

#include <string>

#include "VelmoraWidget/Reports.hpp"
#include "VelmoraWidget/VelmoraSnapshot.hpp"

namespace velmora {

/// Fetches everything anew, stores the snapshot in the cache and returns it. Waits for two to
/// five requests, one after the other. Throws the first error met (those of refreshAccessToken and
/// AdSenseClient), in which case the cache is left as it was; that the refresh token is no longer
/// the stored one at the end is such an error.
VelmoraSnapshot fetchSnapshot();

/// The totals and performance values of the periods that end with the table's latest day; the
/// rest of the snapshot is empty. Missing days count as 0.
/// `anchor` is the latest day as an instant; see anchorDay.
VelmoraSnapshot periodFigures(const DayTable& days, platform::Instant anchor);

/// The latest day of a table that is not empty; `now` when its key does not read as a date.
platform::Instant anchorDay(const DayTable& days, platform::Instant now);

}  // namespace velmora
