#pragma once

#include <optional>
#include <string>

#include "companion/client_file.hpp"

namespace companion {

/// Where the browser is to come back to. As it stands, the choice of a desktop application: any
/// free port of 127.0.0.1.
struct RedirectAddress {
  std::string uri;  ///< to the letter, as the provider compares it
  int port = 0;
  std::string path = "/";
  bool isNamed = false;  ///< "localhost", which the browser may take for 127.0.0.1 or for [::1]
};

/// The first of a web client's redirect addresses that lies on this machine's 127.0.0.1: plain http
/// to that address or to "localhost". Absent without one.
std::optional<RedirectAddress> loopbackRedirect(const Client& client);

}  // namespace companion
