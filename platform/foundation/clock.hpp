#pragma once

#include "platform/foundation/instant.hpp"

namespace platform {

/// The one clock: the current instant. Defined in system_clock.cpp, a unit of its own, so that a
/// test program can link a clock that stands still.
Instant now();

}  // namespace platform
