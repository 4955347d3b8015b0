#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace companion::window {

/// Where the widget stands on the desktop and in which size, as velmora-desktop keeps it.
struct Placement {
  std::string family = "small";
  std::string corner = "top-right";
  std::string monitor;   ///< a number or a name; empty for the main one
  bool isMoved = false;  ///< dragged to a place of its own

  bool operator==(const Placement&) const = default;
};

/// `$XDG_CONFIG_HOME/velmora-desktop/placement.json`.
std::filesystem::path placementFile();

/// The choices that velmora-desktop keeps; the defaults where it keeps none that can be read.
Placement readPlacement(std::string_view json);
Placement loadPlacement();

/// The options that turn one placement into another; those of a new start name everything but the
/// corner of a widget that was dragged.
std::vector<std::string> optionsFor(const Placement& placement);
std::vector<std::string> optionsFor(const Placement& placement, const Placement& before);

}  // namespace companion::window
