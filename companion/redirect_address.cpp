#include "companion/redirect_address.hpp"

#include "platform/foundation/url.hpp"

namespace companion {

std::optional<RedirectAddress> loopbackRedirect(const Client& client) {
  for (const auto& uri : client.redirectURIs) {
    const auto origin = platform::originOf(uri);
    const bool here = origin && origin->scheme == "http" &&
                      (origin->host == "127.0.0.1" || origin->host == "localhost");
    // User information in front of the host, a query or a fragment would not come back as they are.
    if (!here || origin->port == "0" || uri.find_first_of("@?#") != std::string::npos) continue;
    return RedirectAddress{uri, std::stoi(origin->port), platform::pathOf(uri),
                           origin->host == "localhost"};
  }
  return std::nullopt;
}

}  // namespace companion
