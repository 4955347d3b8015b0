#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string>

#include "desktop/geometry.hpp"
#include "desktop/scale.hpp"
#include "platform/widgets/widget_family.hpp"

namespace desktop {

enum class Corner { topLeft, topRight, bottomLeft, bottomRight };

/// "top-left" and so on; absent for any other text.
std::optional<Corner> cornerFromName(const std::string& name);
std::string cornerName(Corner corner);
bool isLeft(Corner corner);
bool isTop(Corner corner);

/// The families that can be chosen here, the smallest first.
inline constexpr std::array offeredFamilies{platform::WidgetFamily::systemSmall,
                                            platform::WidgetFamily::systemMedium,
                                            platform::WidgetFamily::systemLarge};

/// "small", "medium" or "large"; absent for any other text.
std::optional<platform::WidgetFamily> offeredFamily(const std::string& name);

// What can be chosen, and so what is read back.
inline constexpr int largestMargin = 2000;
inline constexpr std::size_t longestMonitorName = 256;  ///< bytes

/// Where the widget stands and how it looks: the user's choices, kept between starts. Lengths are
/// in points.
struct Placement {
  platform::WidgetFamily family = platform::WidgetFamily::systemSmall;
  Corner corner = Corner::topRight;
  int margin = 24;             ///< from the edges of the work area
  std::string monitor;         ///< a number from 0, or a name; empty for the primary one
  std::optional<Point> moved;  ///< from the work area's top left, after the user dragged it
  Scale lastScale;             ///< where it last stood
  bool hidesAmounts = false;   ///< the picture is blurred beyond reading

  bool operator==(const Placement&) const = default;
};

/// A widget's size in points.
Extent sizeInPoints(platform::WidgetFamily family);

/// The top left corner of a widget of that size in a work area; wholly inside as far as it fits.
/// Area, size and result are in device pixels of that scale.
Point position(const Placement& placement, Extent size, const Area& workArea, Scale scale);

/// The corner of a work area that a widget there is nearest to, both in the same unit.
Corner nearestCorner(Point position, Extent size, const Area& workArea);

/// `$XDG_CONFIG_HOME/velmora-desktop/placement.json`.
std::filesystem::path placementFile();

/// Reads what is kept. Throws platform::JsonDecodingError.
Placement decodePlacement(const std::string& document);

/// The kept choices; the defaults where there are none that can be read.
Placement keptPlacement();

/// The same for the host alone: says on standard error when what is there cannot be read, and sets
/// it aside under another name, so that the next start is not stopped by it either.
Placement loadPlacement(const std::filesystem::path& file);

/// Keeps the choices, whole or not at all; places far outside every screen are kept as the nearest
/// that is read back. Throws platform::FileError.
void storePlacement(const Placement& placement, const std::filesystem::path& file);

}  // namespace desktop
