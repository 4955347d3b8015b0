#include "desktop/schedule.hpp"

#include <algorithm>
#include <cstdio>

#include "platform/foundation/calendar.hpp"

namespace desktop {

namespace {

constexpr double longestInterval = 86400;

}  // namespace

bool isReloadDue(const Schedule& schedule, double now) {
  return now >= schedule.reloadDate || now < schedule.askedAt;
}

std::optional<double> nextChange(const Schedule& schedule, double now) {
  if (schedule.isFetching) return std::nullopt;
  return isReloadDue(schedule, now) ? now : schedule.reloadDate;
}

Schedule rescheduled(std::optional<double> reloadDate, double now) {
  const bool usable = reloadDate && *reloadDate > now && *reloadDate <= now + longestInterval;
  return {.askedAt = now, .reloadDate = usable ? *reloadDate : now + regularInterval};
}

Schedule retried(int failures, double now) {
  double interval = shortestInterval;
  for (int i = 1; i < failures && interval < regularInterval; ++i) interval *= 2;
  return {.askedAt = now, .reloadDate = now + std::min(interval, regularInterval)};
}

Schedule hastened(Schedule schedule, double lastAsked, double now) {
  // A clock that was set may have put the last time anywhere.
  const double soonest = std::clamp(lastAsked + shortestInterval, now, now + shortestInterval);
  schedule.reloadDate = std::min(schedule.reloadDate, soonest);
  return schedule;
}

std::optional<double> unixSecondsFromIso(const std::string& text) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, millisecond = 0, end = 0;
  // Integers alone: what a decimal point is depends on the user's locale.
  const int fields = std::sscanf(text.c_str(), "%4d-%2d-%2dT%2d:%2d:%2d.%3dZ%n", &year, &month,
                                 &day, &hour, &minute, &second, &millisecond, &end);
  if (fields != 7 || static_cast<std::size_t>(end) != text.size()) return std::nullopt;
  const auto midnight = platform::UtcCalendar{}.date({year, month, day});
  if (!midnight) return std::nullopt;
  return platform::unixSeconds(*midnight) + hour * 3600 + minute * 60 + second +
         millisecond / 1000.0;
}

}  // namespace desktop
