#pragma once

#include "desktop/screens/x11_display.hpp"

namespace desktop {

/// What the widget's windows and pictures are made of.
struct X11Visual {
  xcb_visualtype_t* type = nullptr;
  std::uint8_t depth = 0;
  bool isTransparent = false;          ///< with a compositor; else a window has to be cut
  xcb_colormap_t colormap = XCB_NONE;  ///< as long as the connection, see the implementation
};

/// The transparent one of the screen, else the one of its root window.
X11Visual widgetVisual(const X11Display& display);

}  // namespace desktop
