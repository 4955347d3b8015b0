#pragma once

#include <string>

namespace velmora {

/// The base URL of the AdSense Management API, version 2, without a trailing slash. Defined in a
/// unit of its own, so that each build and each test program links the one it talks to.
std::string adSenseBaseURL();

}  // namespace velmora
