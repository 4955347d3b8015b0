#pragma once

#include <optional>
#include <string>
#include <vector>

namespace desktop::menu {

/// What velmora-desktop asks of the menu's program.
struct Call {
  std::string displayKind = "x11";
  std::vector<int> at{0, 0};  // device pixels of the screen; on Wayland as `MenuSpot` says
  std::vector<int> output;    // its x, y, width and height; empty on X11
  std::string family;         // the widget's
  std::string corner;         // the widget's; empty after it was dragged
  std::string amounts;        // show or hide, as it is now; empty offers no choice

  [[nodiscard]] bool isWayland() const { return displayKind == "wayland"; }
};

/// Reads the command line. Returns the status to end with, after help or a wrong call, of which one
/// line has told.
std::optional<int> parseCall(int argumentCount, char** arguments, Call& call);

}  // namespace desktop::menu
