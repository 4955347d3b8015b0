#pragma once

#include <functional>
#include <vector>

#include "companion/loopback_sockets.hpp"
#include "platform/foundation/glib.hpp"

namespace companion {

/// Lets the connections in that come to listening sockets, in the default main context. A limited
/// number is open at once: a further one ends the oldest that is not kept. So idle connections
/// neither keep others out nor use the process's descriptors up, and where there is no descriptor
/// to be had for now, it tries again.
class ConnectionGate {
 public:
  /// Takes a connection, and both of its addresses.
  using Enter = std::function<void(GSocketConnection* connection, GSocketAddress* here,
                                   GSocketAddress* there)>;

  ConnectionGate(std::vector<ListeningSocket> listening, Enter enter);
  ~ConnectionGate();
  ConnectionGate(const ConnectionGate&) = delete;
  ConnectionGate& operator=(const ConnectionGate&) = delete;

  [[nodiscard]] int port() const { return portOf(listening_.front().get()); }
  /// The connection from there; null when it has been ended.
  [[nodiscard]] GSocket* find(GSocketAddress* there) const;
  /// From now on this one is not ended for another's sake.
  void keep(GSocketAddress* there);
  /// Ends a connection in both directions; who has taken it finds its end and closes it.
  static void end(GSocket* connection);

 private:
  struct Connection {
    platform::Reference<GSocket> socket;
    platform::Reference<GSocketAddress> there;
    bool isKept = false;
  };

  static void endSource(GSource* source);
  using Source = platform::Owned<GSource, endSource>;

  void open();
  void takeOne(GSocket* listening);
  void enter(platform::Reference<GSocket> socket);
  void pause();
  void forgetClosed();
  void endOldest();

  std::vector<ListeningSocket> listening_;
  Enter enter_;
  std::vector<Source> sources_;
  unsigned pause_ = 0;                   ///< source that ends a pause
  std::vector<Connection> connections_;  ///< oldest first
};

}  // namespace companion
