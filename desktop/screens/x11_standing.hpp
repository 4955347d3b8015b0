#pragma once

#include <memory>

#include "desktop/screens/x11_display.hpp"

namespace desktop {

/// How a window asks to lie on the desktop, below other windows, and to stay during "show desktop".
enum class Standing {
  dock,      ///< a dock that reserves no edge
  groupmate  ///< a window in one group with a desktop's: from version 6 on KWin has docks above
             ///< windows, and spares what belongs to a desktop
};

/// What the window manager that runs now takes as such; `dock` without one.
Standing wantedStanding(const X11Display& display);

/// A window of the desktop's type that is out of sight, for another one to be in its group.
class X11DesktopMate {
 public:
  explicit X11DesktopMate(std::shared_ptr<const X11Display> display);
  ~X11DesktopMate();
  X11DesktopMate(const X11DesktopMate&) = delete;
  X11DesktopMate& operator=(const X11DesktopMate&) = delete;

  /// It leads the group.
  [[nodiscard]] xcb_window_t group() const { return window_; }

 private:
  std::shared_ptr<const X11Display> display_;
  xcb_window_t window_;
};

}  // namespace desktop
