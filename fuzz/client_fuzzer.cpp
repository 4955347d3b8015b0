#include <cstdint>
#include <string_view>

#include "companion/authorization.hpp"
#include "companion/client_file.hpp"
#include "companion/redirect_address.hpp"
#include "platform/foundation/url.hpp"

// A client file that somebody picked: it is refused, or a sign-in can begin with it, at the
// provider that it names and with a way back to this machine.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const auto client = companion::parseClientFile({reinterpret_cast<const char*>(data), size});
    const auto redirect = companion::loopbackRedirect(client);
    if (client.isWeb && !redirect) __builtin_trap();
    if (redirect && (redirect->port < 0 || redirect->port > 65535 || redirect->path[0] != '/'))
      __builtin_trap();
    const auto address = companion::authorizationAddress(
        client.config, {redirect ? redirect->uri : "http://127.0.0.1:9", "state", "verifier"});
    if (platform::originOf(address) != platform::originOf(client.config.authURI)) __builtin_trap();
  } catch (const companion::ClientFileError&) {
    return 0;  // refused
  }
  return 0;
}
