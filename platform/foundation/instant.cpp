#include "platform/foundation/instant.hpp"

#include <cmath>
#include <cstdio>

#include "platform/foundation/calendar.hpp"

namespace platform {

Instant instantFromUnixSeconds(double seconds) { return {seconds - referenceDateInUnixSeconds}; }

double unixSeconds(Instant instant) {
  return instant.secondsSinceReferenceDate + referenceDateInUnixSeconds;
}

Instant operator+(Instant instant, double seconds) {
  return {instant.secondsSinceReferenceDate + seconds};
}

std::string iso8601(Instant instant) {
  const auto day = UtcCalendar{}.components(instant);
  if (!day.year || !day.month || !day.day) return "";
  const double seconds = unixSeconds(instant);
  const double secondOfDay = seconds - std::floor(seconds / secondsPerDay) * secondsPerDay;
  const auto milliseconds = static_cast<long long>(std::floor(secondOfDay * 1000));
  char text[64];
  std::snprintf(text, sizeof text, "%04lld-%02lld-%02lldT%02lld:%02lld:%02lld.%03lldZ",
                static_cast<long long>(*day.year), static_cast<long long>(*day.month),
                static_cast<long long>(*day.day), milliseconds / 3'600'000,
                milliseconds / 60'000 % 60, milliseconds / 1000 % 60, milliseconds % 1000);
  return text;
}

}  // namespace platform
