#include "VelmoraWidget/OAuthConfig.hpp"

#include "platform/foundation/bundle.hpp"
#include "platform/foundation/json.hpp"

namespace velmora {

std::optional<OAuthConfig> loadOAuthConfig() {
  const auto file = platform::readResource("client_secret.json");
  if (!file) return std::nullopt;
  try {
    const platform::JsonDecoder document(*file);
    const auto client = document.at(document.contains("installed") ? "installed" : "web");
    return OAuthConfig{client.at("client_id").string(), client.at("client_secret").string(),
                       client.at("auth_uri").string(), client.at("token_uri").string()};
  } catch (const platform::JsonDecodingError&) {
    return std::nullopt;
  }
}

}  // namespace velmora
