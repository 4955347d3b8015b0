#pragma once

#include <wayland-cursor.h>

#include "desktop/screens/wayland_display.hpp"

namespace desktop {

/// The arrow of the user's theme, in memory only while the pointer is on the widget.
class WaylandCursor {
 public:
  /// Shows it for the entrance of that serial number; without a theme the pointer stays as it is.
  WaylandCursor(const WaylandDisplay& display, wl_pointer* pointer, std::uint32_t serial);

 private:
  platform::Owned<wl_cursor_theme, wl_cursor_theme_destroy> theme_;
  WaylandOwned<wl_surface> surface_;
};

}  // namespace desktop
