#pragma once

#include <functional>

namespace tests {

/// Looks again and again until it has happened; throws std::runtime_error after thirty
/// seconds.
void waitFor(const char* what, const std::function<bool()>& happened);

}  // namespace tests
