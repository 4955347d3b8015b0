#include "VelmoraWidget/AccountResolution.hpp"

#include <tuple>

#include "platform/foundation/user_defaults.hpp"

namespace velmora {

std::string resolveAccountName(const AdSenseClient& client, const std::function<void()>& check) {
  const auto defaults = platform::UserDefaults::standard();
  if (auto cached = defaults.string(accountCacheKey)) return *cached;
  auto name = client.fetchAccountName();
  // One that cannot be stored is asked for again the next time.
  std::ignore = defaults.change([&](auto& changes) {
    check();
    changes.setString(accountCacheKey, name);
  });
  return name;
}

}  // namespace velmora
