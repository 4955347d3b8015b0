#pragma once

#include <gdk/gdk.h>

#include <optional>
#include <string>
#include <vector>

namespace companion::window {

/// A screen that the widget can stand on.
struct Monitor {
  std::string connector;  ///< "HDMI-1", as velmora-desktop takes it
  std::string name;       ///< for people
};

std::vector<Monitor> monitorsOf(GdkDisplay* display);

/// The connector of the monitor that was chosen by name, by number from 0, or by the empty text for
/// the main one, which stays empty. Absent when it is not connected.
std::optional<std::string> connectorOf(const std::string& chosen,
                                       const std::vector<Monitor>& monitors);

}  // namespace companion::window
