#pragma once

#include <gio/gio.h>
#include <sys/types.h>

#include <string>

namespace companion {

/// Who is at the other end of a connection, as the system's table of connections tells.
enum class Peer {
  sameUser,   ///< or the administrator
  otherUser,  ///< or somebody who has gone already
  unknown
};

/// Both ends of a connection, written as in /proc/net/tcp and /proc/net/tcp6.
struct ConnectionEnds {
  std::string here;
  std::string there;
  std::string thereMapped;  ///< an IPv4 address that the other end uses by way of IPv6
};

/// Reads the tables' text. One that does not list our own end tells nothing.
Peer peerIn(const std::string& tables, const ConnectionEnds& ends, uid_t user);

/// Of an open connection on this machine.
Peer peerOf(GSocket* connection);

}  // namespace companion
