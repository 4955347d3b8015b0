#include "companion/loopback_peer.hpp"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>

namespace companion {

namespace {

constexpr const char* listeningState = "0A";
constexpr uid_t administrator = 0;

/// One line of a table. The inode is 0 once no process has the socket any more.
struct Row {
  std::string here;
  std::string there;
  std::string state;
  uid_t user = 0;
  unsigned long inode = 0;
};

bool readRow(const std::string& line, Row& row) {
  std::istringstream words(line);
  std::string skipped;
  words >> skipped >> row.here >> row.there >> row.state >> skipped >> skipped >> skipped;
  words >> row.user >> skipped >> row.inode;
  return !words.fail();
}

/// Each 32-bit word of the address as the machine holds it.
std::string addressText(const void* address, std::size_t words) {
  std::string text;
  for (std::size_t i = 0; i < words; ++i) {
    std::uint32_t word = 0;
    std::memcpy(&word, static_cast<const char*>(address) + i * sizeof word, sizeof word);
    std::array<char, 9> digits{};
    std::snprintf(digits.data(), digits.size(), "%08X", word);
    text += digits.data();
  }
  return text;
}

std::string endText(const sockaddr_storage& end) {
  const auto& ipv4 = reinterpret_cast<const sockaddr_in&>(end);
  const auto& ipv6 = reinterpret_cast<const sockaddr_in6&>(end);
  std::array<char, 6> port{};
  std::snprintf(port.data(), port.size(), ":%04X", ntohs(ipv4.sin_port));
  return (end.ss_family == AF_INET ? addressText(&ipv4.sin_addr, 1)
                                   : addressText(&ipv6.sin6_addr, 4)) +
         port.data();
}

/// The same end of a program that reaches an IPv4 address by way of IPv6 (RFC 4291, section
/// 2.5.5.2).
std::string mapped(const std::string& ipv4End) {
  const std::array<std::uint32_t, 3> prefix{0, 0, htonl(0xFFFF)};
  return addressText(prefix.data(), prefix.size()) + ipv4End;
}

std::string contentOf(const char* file) {
  std::ostringstream content;
  content << std::ifstream(file).rdbuf();
  return content.str();
}

}  // namespace

Peer peerIn(const std::string& tables, const ConnectionEnds& ends, uid_t user) {
  bool tells = false;
  bool isOpen = false;
  std::istringstream lines(tables);
  Row row;
  for (std::string line; std::getline(lines, line);) {
    if (!readRow(line, row)) continue;
    if ((row.here == ends.there || row.here == ends.thereMapped) &&
        row.there.ends_with(ends.here)) {
      const bool isOurs = row.user == user || row.user == administrator;
      return row.inode != 0 && isOurs ? Peer::sameUser : Peer::otherUser;
    }
    if (row.here != ends.here) continue;
    tells = tells || row.state == listeningState;
    isOpen = isOpen || row.there == ends.there;
  }
  // An open connection whose other end is in no table comes from outside of it, such as by way of
  // the machine that this one is a guest of.
  return tells && !isOpen ? Peer::otherUser : Peer::unknown;
}

Peer peerOf(GSocket* connection) {
  sockaddr_storage here{};
  sockaddr_storage there{};
  socklen_t hereSize = sizeof here;
  socklen_t thereSize = sizeof there;
  const int number = g_socket_get_fd(connection);
  if (::getsockname(number, reinterpret_cast<sockaddr*>(&here), &hereSize) != 0)
    return Peer::unknown;
  // Without an address there is nobody any more who could read an answer.
  if (::getpeername(number, reinterpret_cast<sockaddr*>(&there), &thereSize) != 0)
    return Peer::otherUser;
  const auto end = endText(there);
  const auto tables = contentOf("/proc/self/net/tcp") + contentOf("/proc/self/net/tcp6");
  return peerIn(tables, {endText(here), end, mapped(end)}, ::geteuid());
}

}  // namespace companion
