#pragma once

#include <chrono>

namespace velmora {

/// How long one request may take. Defined in a unit of its own, so that a test program can link a
/// shorter one.
std::chrono::milliseconds requestTimeout();

}  // namespace velmora
