#include "desktop/screens/screen.hpp"

#include <glib.h>

#include <cstdlib>
#include <stdexcept>

#include "desktop/screens/wayland_screen.hpp"
#include "desktop/screens/x11_screen.hpp"

namespace desktop {

namespace {

std::unique_ptr<WaylandDisplay> connectToWayland() {
  try {
    return std::make_unique<WaylandDisplay>();
  } catch (const std::runtime_error&) {
    return nullptr;
  }
}

std::unique_ptr<Screen> connectToX11(const ScreenEvents& events, const Placement& placement) {
  if (std::getenv("DISPLAY") == nullptr) return nullptr;
  try {
    return openX11(events, placement);
  } catch (const std::runtime_error&) {
    return nullptr;
  }
}

}  // namespace

std::unique_ptr<Screen> openScreen(const ScreenEvents& events, const Placement& placement) {
  auto wayland = connectToWayland();
  if (wayland && wayland->layerShell() != nullptr)
    return openWayland(std::move(wayland), events, placement);
  if (wayland && std::getenv("DISPLAY") == nullptr)
    throw std::runtime_error(
        "this Wayland compositor has no layer shell, and XWayland is not running; start XWayland, "
        "or use a compositor with a layer shell");
  if (wayland)
    g_printerr(
        "velmora-desktop: this compositor has no layer shell; by way of XWayland the widget may "
        "be less sharp on scaled screens\n");
  if (auto x11 = connectToX11(events, placement)) return x11;
  throw std::runtime_error(
      "no display can be opened; start it from a desktop session, or set DISPLAY or "
      "WAYLAND_DISPLAY");
}

}  // namespace desktop
