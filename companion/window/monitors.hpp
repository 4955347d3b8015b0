#pragma once

#include <gdk/gdk.h>

#include <string>
#include <vector>

namespace companion::window {

/// A screen that the widget can stand on.
struct Monitor {
  std::string connector;  ///< "HDMI-1", as velmora-desktop takes it
  std::string name;       ///< for people
};

std::vector<Monitor> monitorsOf(GdkDisplay* display);

}  // namespace companion::window
