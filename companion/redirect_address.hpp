#pragma once

#include <optional>
#include <string>

#include "companion/client_file.hpp"

namespace companion {

/// Where a client of kind "web" wants the browser to come back to.
struct RedirectAddress {
  std::string uri;  ///< to the letter, as the provider compares it
  int port = 0;
  std::string path;  ///< at least "/"
};

/// The first of a client's redirect addresses that lies on this machine's 127.0.0.1: plain http to
/// that address or to "localhost". Absent without one.
std::optional<RedirectAddress> loopbackRedirect(const Client& client);

}  // namespace companion
