#include "desktop/network_watch.hpp"

#include <glib-unix.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "platform/processes/guarded.hpp"

namespace desktop {

namespace {

constexpr unsigned long refusal = 0x200;  // the flag of a route that leads nowhere (RTF_REJECT)

/// The words of each line.
std::vector<std::vector<std::string>> rows(std::string_view table) {
  std::vector<std::vector<std::string>> result;
  std::istringstream lines{std::string(table)};
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    result.emplace_back(std::istream_iterator<std::string>(words),
                        std::istream_iterator<std::string>());
  }
  return result;
}

bool leadsSomewhere(const std::string& flags) {
  return (std::strtoul(flags.c_str(), nullptr, 16) & refusal) == 0;
}

/// A file of the kernel's, which has no size of its own.
std::string kernelTable(const char* file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

bool isNetworkThere() {
  return hasDefaultRoute(kernelTable("/proc/net/route"), kernelTable("/proc/net/ipv6_route"));
}

platform::Descriptor openRouteEvents() {
  platform::Descriptor events(
      socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE));
  sockaddr_nl address{};
  address.nl_family = AF_NETLINK;
  address.nl_groups = RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE;
  if (!events || bind(events.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
    return platform::Descriptor();
  return events;
}

}  // namespace

bool hasDefaultRoute(std::string_view ipv4Table, std::string_view ipv6Table) {
  // Interface, destination, gateway, flags, three counters, mask.
  for (const auto& row : rows(ipv4Table)) {
    if (row.size() > 7 && row[1] == "00000000" && row[7] == "00000000" && leadsSomewhere(row[3]))
      return true;
  }
  // Destination and its length, source and its length, next hop, metric, two counters, flags.
  for (const auto& row : rows(ipv6Table)) {
    if (row.size() > 8 && row[0] == std::string(32, '0') && row[1] == "00" &&
        leadsSomewhere(row[8]))
      return true;
  }
  return false;
}

void NetworkWatch::noteQuestion() {
  stop();
  // Watched before it is looked at, so that nothing is missed in between.
  socket_ = openRouteEvents();
  if (!socket_ || isNetworkThere()) return stop();
  source_ = g_unix_fd_add(socket_.get(), G_IO_IN, routesChanged, this);
}

gboolean NetworkWatch::routesChanged(gint socket, GIOCondition, gpointer watch) {
  std::array<char, 4096> unread{};
  while (recv(socket, unread.data(), unread.size(), 0) > 0) {
    // What has changed is seen in the tables.
  }
  platform::guarded([&] {
    if (!isNetworkThere()) return;
    auto* self = static_cast<NetworkWatch*>(watch);
    self->stop();
    self->came_();
  });
  return G_SOURCE_CONTINUE;  // it is removed already
}

void NetworkWatch::stop() {
  if (source_ != 0) g_source_remove(source_);
  source_ = 0;
  socket_ = platform::Descriptor();
}

}  // namespace desktop
