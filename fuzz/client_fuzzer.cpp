#include <cstdint>
#include <cstdlib>

#include "companion/client_file.hpp"
#include "companion/redirect_address.hpp"
#include "platform/foundation/url.hpp"

// A file that a user picked. What is taken can be signed in with: its secrets go nowhere but to
// protected addresses, and a web client comes back to this machine.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const auto client = companion::parseClientFile({reinterpret_cast<const char*>(data), size});
    const auto token = platform::originOf(client.config.tokenURI);
    if (!token || !platform::isAllowed(*token) || client.config.clientID.empty()) std::abort();
    if (client.isWeb && companion::loopbackRedirect(client)->port <= 0) std::abort();
  } catch (const companion::ClientFileError&) {
  }
  return 0;
}
