#include "VelmoraWidget/AccountResolution.hpp"

#include "platform/foundation/user_defaults.hpp"

namespace velmora {

std::string resolveAccountName(const AdSenseClient& client) {
  const auto defaults = platform::UserDefaults::standard();
  if (auto cached = defaults.string(accountCacheKey)) return *cached;
  auto name = client.fetchAccountName();
  defaults.setString(accountCacheKey, name);
  return name;
}

}  // namespace velmora
