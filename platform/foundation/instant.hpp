#pragma once

#include <compare>
#include <string>

namespace platform {

/// An absolute point in time, in seconds (with fraction) since the reference date
/// 2001-01-01T00:00:00Z. It stays a double from end to end, so that a stored instant comes back
/// as the very same value.
struct Instant {
  double secondsSinceReferenceDate = 0;

  auto operator<=>(const Instant&) const = default;
};

/// Unix seconds of the reference date.
inline constexpr double referenceDateInUnixSeconds = 978307200;
inline constexpr double secondsPerDay = 86400;

Instant instantFromUnixSeconds(double seconds);
double unixSeconds(Instant instant);
Instant operator+(Instant instant, double seconds);

/// "2026-05-21T09:30:00.250Z" (ISO 8601, UTC, whole milliseconds, rounded down). An instant
/// outside the calendar's years gives the empty text.
std::string iso8601(Instant instant);

}  // namespace platform
