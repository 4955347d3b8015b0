#include "desktop/network_watch.hpp"

#include "desktop/guarded.hpp"

namespace desktop {

namespace {

/// A monitor of our own, which can be let go of, that looks at the kernel's routes alone: the
/// shared one of the process stays for good and talks to other programs. Null where the kernel
/// tells nothing.
GNetworkMonitor* openMonitor() {
  g_io_extension_point_register(G_NETWORK_MONITOR_EXTENSION_POINT_NAME);
  GIOExtensionPoint* point = g_io_extension_point_lookup(G_NETWORK_MONITOR_EXTENSION_POINT_NAME);
  GIOExtension* kernel = g_io_extension_point_get_extension_by_name(point, "netlink");
  if (kernel == nullptr) return nullptr;
  auto* opened = g_initable_new(g_io_extension_get_type(kernel), nullptr, nullptr, nullptr);
  return reinterpret_cast<GNetworkMonitor*>(opened);
}

}  // namespace

void NetworkWatch::noteQuestion() {
  if (!monitor_) {
    monitor_.reset(openMonitor());
    if (monitor_) g_signal_connect(monitor_.get(), "network-changed", G_CALLBACK(changed), this);
  }
  if (monitor_ && g_network_monitor_get_network_available(monitor_.get()) != FALSE)
    monitor_.reset();
}

void NetworkWatch::changed(GNetworkMonitor*, gboolean available, gpointer watch) {
  if (available == FALSE) return;
  // The monitor is in the middle of its work; the next question lets it go.
  guarded([&] { static_cast<NetworkWatch*>(watch)->came_(); });
}

}  // namespace desktop
