#include "companion/loopback_sockets.hpp"

#include <netinet/in.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstdint>
#include <string>
#include <system_error>

#include "companion/sign_in_error.hpp"

namespace companion {

namespace {

using Case = SignInError::Case;

constexpr int backlog = 128;

sockaddr_in loopbackAddress(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

sockaddr_in6 loopbackAddress6(int port) {
  sockaddr_in6 address{};
  address.sin6_family = AF_INET6;
  address.sin6_port = htons(static_cast<std::uint16_t>(port));
  address.sin6_addr = in6addr_loopback;
  return address;
}

template <class Address>
int bindTo(const platform::Descriptor& socket, const Address& address) {
  return ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

/// Binds a new socket to the loopback address of a family. Returns no socket, and errno, when that
/// fails.
platform::Descriptor boundSocket(int family, int port) {
  platform::Descriptor bound(::socket(family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!bound) return bound;
  // Connections of the last sign-in that are not quite over do not keep the port.
  const int reuse = 1;
  ::setsockopt(bound.get(), SOL_SOCKET, SO_REUSEADDR, &reuse, sizeof reuse);
  const int result = family == AF_INET ? bindTo(bound, loopbackAddress(port))
                                       : bindTo(bound, loopbackAddress6(port));
  return result == 0 ? std::move(bound) : platform::Descriptor();
}

/// Whether anybody on this machine gets to 127.0.0.1; one can be bound to it even so.
bool isLoopbackUp() {
  const platform::Descriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  const auto address = loopbackAddress(1);
  return !socket ||
         ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

ListeningSocket listening(int family, int port) {
  auto bound = boundSocket(family, port);
  if (!bound || ::listen(bound.get(), backlog) != 0) return nullptr;
  return ListeningSocket(g_socket_new_from_fd(bound.release(), nullptr));
}

SignInError failure(int code, int port) {
  const auto number = std::to_string(port);
  switch (code) {
    case EADDRINUSE:
      return port == 0 ? SignInError(Case::noFreePort) : SignInError(Case::portTaken, number);
    case EACCES:
      return SignInError(Case::portForbidden, number);
    case EADDRNOTAVAIL:
      return SignInError(Case::noLoopback);
    default:
      return SignInError(Case::notListening, std::generic_category().message(code));
  }
}

bool isWithoutIPv6(int code) { return code == EADDRNOTAVAIL || code == EAFNOSUPPORT; }

}  // namespace

std::vector<ListeningSocket> listenOnLoopback(int port, bool alsoIPv6) {
  if (!isLoopbackUp()) throw SignInError(Case::noLoopback);
  std::vector<ListeningSocket> sockets;
  sockets.push_back(listening(AF_INET, port));
  if (!sockets.back()) throw failure(errno, port);
  if (!alsoIPv6) return sockets;
  sockets.push_back(listening(AF_INET6, portOf(sockets.front().get())));
  if (sockets.back()) return sockets;
  if (errno == EADDRINUSE) throw SignInError(Case::portTaken, std::to_string(port) + " ([::1])");
  if (!isWithoutIPv6(errno)) throw failure(errno, port);
  sockets.pop_back();
  return sockets;
}

void requirePermittedPort(int port) {
  if (!boundSocket(AF_INET, port) && errno == EACCES) throw failure(EACCES, port);
}

int portOf(GSocket* socket) {
  const platform::Reference<GSocketAddress> address(g_socket_get_local_address(socket, nullptr));
  return address ? g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(address.get())) : 0;
}

}  // namespace companion
