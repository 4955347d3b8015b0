#pragma once

#include <gtk/gtk.h>

#include <optional>
#include <string>

#include "desktop/placement.hpp"

namespace desktop {

/// How a window is put on a kind of screen; one table for X11, one for Wayland.
struct Screen {
  /// Before the window is shown for the first time.
  void (*prepare)(GtkWindow* window);
  /// Puts the window where the placement says.
  void (*place)(GtkWindow* window, const Placement& placement, GdkMonitor* monitor);
  /// Whether the user can drag the window.
  bool movable;
};

/// Opens the display: X11, or Wayland with a layer shell; on Wayland without one, X11 by way of
/// XWayland, which is said once on standard error. Returns why not, on one line, when there is
/// none.
std::optional<std::string> openDisplay();

/// The table for the display that was opened.
const Screen& currentScreen();

/// The monitor of that number or name; the primary one when there is none such.
GdkMonitor* findMonitor(const std::string& name);

}  // namespace desktop
