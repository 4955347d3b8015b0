#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace desktop {

enum class Corner { topLeft, topRight, bottomLeft, bottomRight };

/// "top-left" and so on; absent for any other text.
std::optional<Corner> cornerFromName(const std::string& name);
std::string cornerName(Corner corner);

struct Point {
  int x = 0;
  int y = 0;

  bool operator==(const Point&) const = default;
};

struct Area {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

/// Where the widget stands and in which size: the user's choices, kept between starts. Lengths are
/// in points.
struct Placement {
  std::string family = "small";  ///< small, medium or large
  Corner corner = Corner::topRight;
  int margin = 24;             ///< from the edges of the work area
  std::string monitor;         ///< a number from 0, or a name; empty for the primary one
  std::optional<Point> moved;  ///< from the work area's top left, after the user dragged it
  int lastScale = 1;           ///< device pixels per point where it last stood

  bool operator==(const Placement&) const = default;
};

/// A widget's size in points, by its family.
Area familySize(const std::string& family);

/// The top left corner of a widget in a work area; wholly inside as far as it fits.
Point position(const Placement& placement, const Area& workArea);

/// `$XDG_CONFIG_HOME/velmora-desktop/placement.json`.
std::filesystem::path placementFile();

/// The kept choices. A damaged file is set aside under another name and the defaults are used.
Placement loadPlacement(const std::filesystem::path& file);

/// Keeps the choices, whole or not at all. Returns whether they could be written.
bool savePlacement(const Placement& placement, const std::filesystem::path& file);

}  // namespace desktop
