#include "companion/connection_gate.hpp"

#include <algorithm>
#include <utility>

namespace companion {

namespace {

constexpr std::size_t mostConnections = 128;
constexpr unsigned pauseMilliseconds = 100;

bool isSame(GSocketAddress* a, GSocketAddress* b) {
  auto* first = G_INET_SOCKET_ADDRESS(a);
  auto* second = G_INET_SOCKET_ADDRESS(b);
  return g_inet_socket_address_get_port(first) == g_inet_socket_address_get_port(second) &&
         g_inet_address_equal(g_inet_socket_address_get_address(first),
                              g_inet_socket_address_get_address(second)) != FALSE;
}

}  // namespace

ConnectionGate::ConnectionGate(std::vector<ListeningSocket> listening, Enter enter)
    : listening_(std::move(listening)), enter_(std::move(enter)) {
  open();
}

ConnectionGate::~ConnectionGate() {
  if (pause_ != 0) g_source_remove(pause_);
}

GSocket* ConnectionGate::find(GSocketAddress* there) const {
  const auto found = std::find_if(connections_.begin(), connections_.end(), [there](const auto& c) {
    return g_socket_is_closed(c.socket.get()) == FALSE && isSame(c.there.get(), there);
  });
  return found == connections_.end() ? nullptr : found->socket.get();
}

void ConnectionGate::keep(GSocketAddress* there) {
  for (auto& connection : connections_) {
    if (isSame(connection.there.get(), there)) connection.isKept = true;
  }
}

void ConnectionGate::end(GSocket* connection) {
  g_socket_shutdown(connection, TRUE, TRUE, nullptr);
}

void ConnectionGate::endSource(GSource* source) {
  g_source_destroy(source);
  g_source_unref(source);
}

void ConnectionGate::open() {
  for (const auto& socket : listening_) {
    auto* source = g_socket_create_source(socket.get(), G_IO_IN, nullptr);
    const auto ready = [](GSocket* listening, GIOCondition, gpointer gate) {
      static_cast<ConnectionGate*>(gate)->takeOne(listening);
      return gboolean{G_SOURCE_CONTINUE};
    };
    g_source_set_callback(source, G_SOURCE_FUNC(+ready), this, nullptr);
    g_source_attach(source, nullptr);
    sources_.emplace_back(source);
  }
}

void ConnectionGate::takeOne(GSocket* listening) {
  GError* problem = nullptr;
  platform::Reference<GSocket> socket(g_socket_accept(listening, nullptr, &problem));
  const platform::GFailure failure(problem);
  if (socket) {
    enter(std::move(socket));
  } else if (!g_error_matches(failure.get(), G_IO_ERROR, G_IO_ERROR_WOULD_BLOCK)) {
    pause();
  }
}

void ConnectionGate::enter(platform::Reference<GSocket> socket) {
  const platform::Reference<GSocketAddress> here(g_socket_get_local_address(socket.get(), nullptr));
  platform::Reference<GSocketAddress> there(g_socket_get_remote_address(socket.get(), nullptr));
  const platform::Reference<GSocketConnection> connection(
      g_socket_connection_factory_create_connection(socket.get()));
  if (!here || !there) return;  // it has gone already
  forgetClosed();
  if (connections_.size() >= mostConnections) endOldest();
  connections_.push_back({std::move(socket), std::move(there)});
  enter_(connection.get(), here.get(), connections_.back().there.get());
}

/// Nothing can be let in for now, most likely for want of a descriptor. The one that waits stays
/// in the queue, and would wake the loop without end.
void ConnectionGate::pause() {
  sources_.clear();
  forgetClosed();
  endOldest();
  const auto over = [](gpointer gate) {
    auto* self = static_cast<ConnectionGate*>(gate);
    self->pause_ = 0;
    self->open();
    return gboolean{G_SOURCE_REMOVE};
  };
  pause_ = g_timeout_add(pauseMilliseconds, over, this);
}

void ConnectionGate::forgetClosed() {
  std::erase_if(connections_,
                [](const auto& c) { return g_socket_is_closed(c.socket.get()) != FALSE; });
}

void ConnectionGate::endOldest() {
  const auto oldest = std::find_if(connections_.begin(), connections_.end(),
                                   [](const auto& c) { return !c.isKept; });
  if (oldest == connections_.end()) return;
  end(oldest->socket.get());
  connections_.erase(oldest);
}

}  // namespace companion
