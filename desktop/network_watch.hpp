#pragma once

#include <gio/gio.h>

#include <functional>

#include "platform/foundation/raii.hpp"

namespace desktop {

/// Tells when the network comes after something was asked without it. Only then is anything
/// watched: routes that change while the network is there wake nobody.
class NetworkWatch {
 public:
  explicit NetworkWatch(std::function<void()> came) : came_(std::move(came)) {}
  NetworkWatch(const NetworkWatch&) = delete;
  NetworkWatch& operator=(const NetworkWatch&) = delete;

  /// The network is about to be used.
  void noteQuestion();

 private:
  static void changed(GNetworkMonitor* monitor, gboolean available, gpointer watch);

  std::function<void()> came_;
  platform::Owned<GNetworkMonitor, g_object_unref> monitor_;  // while it is away
};

}  // namespace desktop
