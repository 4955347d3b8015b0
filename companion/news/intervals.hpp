#pragma once

#include "platform/foundation/instant.hpp"

namespace companion::news {

// In seconds. The widget refreshes every half hour.
inline constexpr double oneInterval = 31 * 60;
inline constexpr double threeIntervals = 90 * 60;
inline constexpr double betweenProbes = 30 * 60;       ///< of what may have gone wrong
inline constexpr double betweenNotices = 6 * 60 * 60;  ///< requests for alerts and policy issues

/// Whether more than those seconds have passed.
inline bool isOlder(platform::Instant instant, double seconds, platform::Instant now) {
  return now > instant + seconds;
}

}  // namespace companion::news
