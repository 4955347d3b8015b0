#include "platform/foundation/calendar.hpp"

#include <chrono>
#include <cmath>
#include <cstdlib>

namespace platform {

namespace {

namespace chr = std::chrono;

constexpr std::int64_t firstYear = -32767;
constexpr std::int64_t lastYear = 32767;
// No day inside the calendar's years needs a larger part than this, however it rolls over.
constexpr std::int64_t largestPart = 100'000'000;

const auto firstDay = chr::sys_days{chr::year{static_cast<int>(firstYear)} / 1 / 1};
const auto lastDay = chr::sys_days{chr::year{static_cast<int>(lastYear)} / 12 / 31};

bool inRange(std::int64_t part) { return part >= -largestPart && part <= largestPart; }

}  // namespace

DateComponents UtcCalendar::components(Instant instant) const {
  const double day = std::floor(unixSeconds(instant) / secondsPerDay);
  const auto first = static_cast<double>(firstDay.time_since_epoch().count());
  const auto last = static_cast<double>(lastDay.time_since_epoch().count());
  if (!(day >= first && day <= last)) return {};
  const chr::year_month_day date{chr::sys_days{chr::days{static_cast<int>(day)}}};
  return {static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
          static_cast<unsigned>(date.day())};
}

std::optional<Instant> UtcCalendar::date(const DateComponents& parts) const {
  const std::int64_t year = parts.year.value_or(1);
  const std::int64_t month = parts.month.value_or(1);
  const std::int64_t day = parts.day.value_or(1);
  if (!inRange(year) || !inRange(month) || !inRange(day)) return std::nullopt;

  const std::int64_t months = year * 12 + (month - 1);
  const std::int64_t wholeYears = (months >= 0 ? months : months - 11) / 12;
  if (wholeYears < firstYear || wholeYears > lastYear) return std::nullopt;
  const auto monthOfYear = static_cast<unsigned>(months - wholeYears * 12) + 1;
  const auto first =
      chr::sys_days{chr::year{static_cast<int>(wholeYears)} / chr::month{monthOfYear} / 1};
  const auto result = first + chr::days{day - 1};
  if (result < firstDay || result > lastDay) return std::nullopt;
  return instantFromUnixSeconds(static_cast<double>(result.time_since_epoch().count()) *
                                secondsPerDay);
}

Instant UtcCalendar::addingDays(Instant instant, int days) const {
  return instant + days * secondsPerDay;
}

std::optional<std::int64_t> UtcCalendar::daysInMonth(std::int64_t year, std::int64_t month) const {
  if (year < firstYear || year > lastYear || month < 1 || month > 12) return std::nullopt;
  const auto lastDayOfMonth =
      chr::year{static_cast<int>(year)} / chr::month{static_cast<unsigned>(month)} / chr::last;
  return static_cast<unsigned>(lastDayOfMonth.day());
}

}  // namespace platform
