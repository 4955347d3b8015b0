#include "tests/support/replaced_constants.hpp"

#include <cstdlib>

#include "VelmoraWidget/AdSenseBaseURL.hpp"
#include "VelmoraWidget/RequestTimeout.hpp"
#include "companion/token_exchange.hpp"

namespace tests {

void setAdSenseBaseURL(const std::string& url) { setenv("VELMORA_TEST_API", url.c_str(), 1); }

void setRevocationURL(const std::string& url) { setenv("VELMORA_TEST_REVOCATION", url.c_str(), 1); }

void setRequestTimeout(std::chrono::milliseconds timeout) {
  setenv("VELMORA_TEST_TIMEOUT_MS", std::to_string(timeout.count()).c_str(), 1);
}

}  // namespace tests

std::string velmora::adSenseBaseURL() {
  const char* url = std::getenv("VELMORA_TEST_API");
  return url == nullptr ? "http://127.0.0.1:9/v2" : url;
}

std::string companion::revocationURL() {
  const char* url = std::getenv("VELMORA_TEST_REVOCATION");
  return url == nullptr ? "http://127.0.0.1:9/revoke" : url;
}

std::chrono::milliseconds velmora::requestTimeout() {
  const char* milliseconds = std::getenv("VELMORA_TEST_TIMEOUT_MS");
  return std::chrono::milliseconds(milliseconds == nullptr ? 20'000 : std::atoi(milliseconds));
}
