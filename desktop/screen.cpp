#include "desktop/screen.hpp"

#include <gdk/gdkwayland.h>
#include <gdk/gdkx.h>
#include <gtk-layer-shell.h>
#include <wayland-client.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "platform/foundation/raii.hpp"

namespace desktop {

namespace {

Area workAreaOf(GdkMonitor* monitor) {
  GdkRectangle area;
  gdk_monitor_get_workarea(monitor, &area);
  return {area.x, area.y, area.width, area.height};
}

void prepareX11(GtkWindow* window) {
  // Of the types that stay below other windows, "show desktop" spares this one alone.
  gtk_window_set_type_hint(window, GDK_WINDOW_TYPE_HINT_DESKTOP);
  gtk_window_set_keep_below(window, TRUE);
  gtk_window_stick(window);
  gtk_window_set_skip_taskbar_hint(window, TRUE);
  gtk_window_set_skip_pager_hint(window, TRUE);
  gtk_window_set_focus_on_map(window, FALSE);
}

void placeX11(GtkWindow* window, const Placement& placement, GdkMonitor* monitor) {
  const auto [x, y] = position(placement, workAreaOf(monitor));
  gtk_window_move(window, x, y);
}

void prepareWayland(GtkWindow* window) {
  gtk_layer_init_for_window(window);
  gtk_layer_set_namespace(window, "velmora");
  gtk_layer_set_layer(window, GTK_LAYER_SHELL_LAYER_BOTTOM);
  gtk_layer_set_keyboard_mode(window, GTK_LAYER_SHELL_KEYBOARD_MODE_ON_DEMAND);
}

void placeWayland(GtkWindow* window, const Placement& placement, GdkMonitor* monitor) {
  const auto corner = placement.corner;
  const bool left = corner == Corner::topLeft || corner == Corner::bottomLeft;
  const bool top = corner == Corner::topLeft || corner == Corner::topRight;
  gtk_layer_set_monitor(window, monitor);
  const auto anchor = [&](GtkLayerShellEdge edge, bool wanted) {
    gtk_layer_set_anchor(window, edge, wanted);
    gtk_layer_set_margin(window, edge, wanted ? placement.margin : 0);
  };
  anchor(GTK_LAYER_SHELL_EDGE_LEFT, left);
  anchor(GTK_LAYER_SHELL_EDGE_RIGHT, !left);
  anchor(GTK_LAYER_SHELL_EDGE_TOP, top);
  anchor(GTK_LAYER_SHELL_EDGE_BOTTOM, !top);
}

constexpr Screen x11{prepareX11, placeX11, true};
constexpr Screen wayland{prepareWayland, placeWayland, false};

enum class Wayland { none, plain, layerShell };

/// What the Wayland compositor offers, asked before GTK opens anything.
Wayland lookAtWayland() {
  using Display = platform::Owned<wl_display, wl_display_disconnect>;
  using Registry = platform::Owned<wl_registry, wl_registry_destroy>;
  // Without this variable the library complains on standard error.
  if (g_getenv("XDG_RUNTIME_DIR") == nullptr) return Wayland::none;
  const Display display(wl_display_connect(nullptr));
  if (!display) return Wayland::none;
  const Registry registry(wl_display_get_registry(display.get()));
  auto found = Wayland::plain;
  const wl_registry_listener listener{
      [](void* data, wl_registry*, std::uint32_t, const char* interface, std::uint32_t) {
        if (std::strcmp(interface, "zwlr_layer_shell_v1") == 0)
          *static_cast<Wayland*>(data) = Wayland::layerShell;
      },
      [](void*, wl_registry*, std::uint32_t) {}};
  wl_registry_add_listener(registry.get(), &listener, &found);
  wl_display_roundtrip(display.get());
  return found;
}

}  // namespace

std::optional<std::string> openDisplay() {
  // GTK would load a whole software renderer to look for OpenGL, which nothing here uses.
  g_setenv("GDK_GL", "disable", TRUE);
  const auto compositor = lookAtWayland();
  if (compositor == Wayland::plain) {
    if (g_getenv("DISPLAY") == nullptr)
      return "this Wayland compositor has no layer shell, and XWayland is not running; start "
             "XWayland, or use a compositor with a layer shell";
    g_printerr(
        "velmora-desktop: this compositor has no layer shell; by way of XWayland the widget "
        "may stand above windows and be less sharp on scaled screens\n");
  }
  gdk_set_allowed_backends(compositor == Wayland::layerShell ? "wayland,x11" : "x11");
  if (!gtk_init_check(nullptr, nullptr))
    return "no display can be opened; start it from a desktop session, or set DISPLAY or "
           "WAYLAND_DISPLAY";
  return std::nullopt;
}

const Screen& currentScreen() {
  return GDK_IS_WAYLAND_DISPLAY(gdk_display_get_default()) ? wayland : x11;
}

GdkMonitor* findMonitor(const std::string& name) {
  GdkDisplay* display = gdk_display_get_default();
  const int count = gdk_display_get_n_monitors(display);
  for (int i = 0; i < count; ++i) {
    GdkMonitor* monitor = gdk_display_get_monitor(display, i);
    const char* model = gdk_monitor_get_model(monitor);
    if (name == std::to_string(i) || (model != nullptr && name == model)) return monitor;
  }
  GdkMonitor* primary = gdk_display_get_primary_monitor(display);
  return primary != nullptr ? primary : gdk_display_get_monitor(display, 0);
}

}  // namespace desktop
