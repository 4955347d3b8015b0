#include "tests/support/held_clock.hpp"

#include <cstdio>
#include <mutex>

#include "platform/foundation/calendar.hpp"
#include "platform/foundation/clock.hpp"

namespace {

std::mutex clockMutex;
platform::Instant heldInstant;
double heldStep = 0;

}  // namespace

// The clock of test programs: it stands still.
platform::Instant platform::now() {
  const std::lock_guard lock(clockMutex);
  const auto reading = heldInstant;
  heldInstant = heldInstant + heldStep;
  return reading;
}

namespace tests {

platform::Instant instant(const std::string& iso) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0;
  double second = 0;
  std::sscanf(iso.c_str(), "%d-%d-%dT%d:%d:%lf", &year, &month, &day, &hour, &minute, &second);
  return *platform::UtcCalendar{}.date({year, month, day}) + (hour * 3600 + minute * 60 + second);
}

void holdClock(platform::Instant instant, double step) {
  const std::lock_guard lock(clockMutex);
  heldInstant = instant;
  heldStep = step;
}

}  // namespace tests
