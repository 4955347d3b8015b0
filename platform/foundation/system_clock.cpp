#include <chrono>

#include "platform/foundation/clock.hpp"

namespace platform {

Instant now() {
  const std::chrono::duration<double> sinceUnixEpoch =
      std::chrono::system_clock::now().time_since_epoch();
  return instantFromUnixSeconds(sinceUnixEpoch.count());
}

}  // namespace platform
