#pragma once

#include <chrono>
#include <string>

namespace tests {

/// Where test programs send their API requests, and for how long they wait. Programs of their own
/// take them from VELMORA_TEST_API, VELMORA_TEST_REVOCATION and VELMORA_TEST_TIMEOUT_MS.
void setAdSenseBaseURL(const std::string& url);
void setRevocationURL(const std::string& url);
void setRequestTimeout(std::chrono::milliseconds timeout);

}  // namespace tests
