#pragma once

#include <string>

#include "platform/foundation/instant.hpp"

namespace tests {

/// The instant of "2026-05-21T09:30:00.250Z".
platform::Instant instant(const std::string& iso);

/// From now on the clock stands there, moving by `step` seconds with each reading.
void holdClock(platform::Instant instant, double step = 0);

}  // namespace tests
