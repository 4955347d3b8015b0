#pragma once

#include <cstdint>
#include <optional>

#include "platform/foundation/instant.hpp"

namespace platform {

/// Parts of a day; a part may be unset.
struct DateComponents {
  std::optional<std::int64_t> year;
  std::optional<std::int64_t> month;
  std::optional<std::int64_t> day;
};

/// The Gregorian calendar in UTC, for the years -32767 to 32767 (year 0 is 1 BC).
struct UtcCalendar {
  /// Year, month and day of an instant; all three unset when it lies outside the years.
  [[nodiscard]] DateComponents components(Instant instant) const;

  /// Midnight of a day. Unset parts count as 1 and parts out of range roll over (month 13 is the
  /// next January, day 0 the last of the month before). Absent when the day lies outside the
  /// calendar's years or a part is absurdly large.
  [[nodiscard]] std::optional<Instant> date(const DateComponents& parts) const;

  /// The same time of day, whole days later (or earlier, when negative).
  [[nodiscard]] Instant addingDays(Instant instant, int days) const;

  /// How many days a month has; absent for a month outside the calendar.
  [[nodiscard]] std::optional<std::int64_t> daysInMonth(std::int64_t year,
                                                        std::int64_t month) const;
};

}  // namespace platform
