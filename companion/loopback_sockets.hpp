#pragma once

#include <vector>

#include "platform/foundation/glib.hpp"

namespace companion {

using ListeningSocket = platform::Reference<GSocket>;

/// Listens on 127.0.0.1, and with `alsoIPv6` on the [::1] of the same port, where the machine has
/// one. Port 0 takes a free one. Throws SignInError (portTaken, portForbidden, noFreePort,
/// noLoopback, notListening).
std::vector<ListeningSocket> listenOnLoopback(int port, bool alsoIPv6);

/// Throws SignInError (portForbidden) when this user can never listen on the port. One that is
/// taken at the moment is none of those.
void requirePermittedPort(int port);

/// Of a socket that listens.
int portOf(GSocket* socket);

}  // namespace companion
