#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "desktop/geometry.hpp"
#include "desktop/scale.hpp"

namespace desktop {

enum class Corner { topLeft, topRight, bottomLeft, bottomRight };

/// "top-left" and so on; absent for any other text.
std::optional<Corner> cornerFromName(const std::string& name);
std::string cornerName(Corner corner);
bool isLeft(Corner corner);
bool isTop(Corner corner);

/// Where the widget stands and in which size: the user's choices, kept between starts. Lengths are
/// in points.
struct Placement {
  std::string family = "small";  ///< small, medium or large
  Corner corner = Corner::topRight;
  int margin = 24;             ///< from the edges of the work area
  std::string monitor;         ///< a number from 0, or a name; empty for the primary one
  std::optional<Point> moved;  ///< from the work area's top left, after the user dragged it
  Scale lastScale;             ///< where it last stood

  bool operator==(const Placement&) const = default;
};

/// A widget's size in points, by the name of its family; empty for one that is not offered here.
Extent familySize(const std::string& family);

/// The top left corner of a widget of that size in a work area; wholly inside as far as it fits.
/// Area, size and result are in device pixels of that scale.
Point position(const Placement& placement, Extent size, const Area& workArea, Scale scale);

/// The corner of a work area that a widget there is nearest to, both in the same unit.
Corner nearestCorner(Point position, Extent size, const Area& workArea);

/// `$XDG_CONFIG_HOME/velmora-desktop/placement.json`.
std::filesystem::path placementFile();

/// The kept choices. What is there but cannot be read is set aside under another name and the
/// defaults are used.
Placement loadPlacement(const std::filesystem::path& file);

/// Keeps the choices, whole or not at all. Says on standard error when they could not be written.
void savePlacement(const Placement& placement, const std::filesystem::path& file);

}  // namespace desktop
