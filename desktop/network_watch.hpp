#pragma once

#include <glib.h>

#include <functional>
#include <string_view>

#include "platform/foundation/raii.hpp"

namespace desktop {

/// Whether a table of the kernel's routes (/proc/net/route, /proc/net/ipv6_route) has one to
/// everywhere that is not a refusal.
bool hasDefaultRoute(std::string_view ipv4Table, std::string_view ipv6Table);

/// Tells when the network comes after something was asked without it. Only then are the kernel's
/// routes watched: while the network is there, changes of routes wake nobody. GLib's monitor would
/// be woken by each of them for as long as the process lives.
class NetworkWatch {
 public:
  explicit NetworkWatch(std::function<void()> came) : came_(std::move(came)) {}
  ~NetworkWatch() { stop(); }
  NetworkWatch(const NetworkWatch&) = delete;
  NetworkWatch& operator=(const NetworkWatch&) = delete;

  /// The network is about to be used.
  void noteQuestion();

 private:
  static gboolean routesChanged(gint socket, GIOCondition, gpointer watch);
  void stop();

  std::function<void()> came_;
  platform::Descriptor socket_;  // while it is away
  unsigned source_ = 0;
};

}  // namespace desktop
