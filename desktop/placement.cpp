#include "desktop/placement.hpp"

#include <glib.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>

#include "desktop/complain.hpp"
#include "platform/foundation/files.hpp"
#include "platform/foundation/json.hpp"

namespace desktop {

namespace fs = std::filesystem;

namespace {

constexpr int largestLength = 100'000;
constexpr std::size_t largestFile = 1U << 16U;

struct NamedCorner {
  const char* name;
  Corner corner;
};

constexpr std::array corners{NamedCorner{"top-left", Corner::topLeft},
                             NamedCorner{"top-right", Corner::topRight},
                             NamedCorner{"bottom-left", Corner::bottomLeft},
                             NamedCorner{"bottom-right", Corner::bottomRight}};

int length(const platform::JsonDecoder& value) {
  const auto number = value.integer();
  if (number < -largestLength || number > largestLength)
    throw platform::JsonDecodingError("a length is out of range");
  return static_cast<int>(number);
}

/// Moves a file out of the way.
void setAside(const fs::path& file, const std::string& problem) {
  complain(file.string() + " is damaged (" + problem +
           "); it is set aside and the defaults are used");
  std::error_code ignored;
  fs::rename(file, file.string() + ".damaged", ignored);
}

int kept(int length) { return std::clamp(length, -largestLength, largestLength); }

}  // namespace

std::optional<Corner> cornerFromName(const std::string& name) {
  for (const auto& known : corners) {
    if (known.name == name) return known.corner;
  }
  return std::nullopt;
}

std::string cornerName(Corner corner) {
  for (const auto& known : corners) {
    if (known.corner == corner) return known.name;
  }
  return "";
}

bool isLeft(Corner corner) { return corner == Corner::topLeft || corner == Corner::bottomLeft; }
bool isTop(Corner corner) { return corner == Corner::topLeft || corner == Corner::topRight; }

std::optional<platform::WidgetFamily> offeredFamily(const std::string& name) {
  for (const auto family : offeredFamilies) {
    if (platform::familyShortName(family) == name) return family;
  }
  return std::nullopt;
}

Extent sizeInPoints(platform::WidgetFamily family) {
  const auto size = platform::familySize(family);
  return {static_cast<int>(size.width), static_cast<int>(size.height)};
}

Point position(const Placement& placement, Extent size, const Area& workArea, Scale scale) {
  const int mostRight = workArea.width - size.width;
  const int mostDown = workArea.height - size.height;
  const int margin = pixels(placement.margin, scale);
  Point wished{isLeft(placement.corner) ? margin : mostRight - margin,
               isTop(placement.corner) ? margin : mostDown - margin};
  if (placement.moved)
    wished = {pixels(placement.moved->x, scale), pixels(placement.moved->y, scale)};
  return {workArea.x + std::clamp(wished.x, 0, std::max(0, mostRight)),
          workArea.y + std::clamp(wished.y, 0, std::max(0, mostDown))};
}

Corner nearestCorner(Point position, Extent size, const Area& workArea) {
  const bool left = 2 * (position.x - workArea.x) + size.width <= workArea.width;
  const bool top = 2 * (position.y - workArea.y) + size.height <= workArea.height;
  if (top) return left ? Corner::topLeft : Corner::topRight;
  return left ? Corner::bottomLeft : Corner::bottomRight;
}

fs::path placementFile() {
  return fs::path(g_get_user_config_dir()) / "velmora-desktop" / "placement.json";
}

Placement decodePlacement(const std::string& document) {
  const platform::JsonDecoder object(document);
  Placement placement;
  const auto family = offeredFamily(object.at("family").string());
  if (!family) throw platform::JsonDecodingError("family: unknown");
  placement.family = *family;
  const auto corner = cornerFromName(object.at("corner").string());
  if (!corner) throw platform::JsonDecodingError("corner: unknown");
  placement.corner = *corner;
  placement.margin = length(object.at("margin"));
  placement.monitor = object.optionalString("monitor").value_or("");
  if (const auto scale = object.optionalAt("lastScale"))
    placement.lastScale = scaleOf(scale->number());
  if (const auto moved = object.optionalAt("moved"))
    placement.moved = Point{length(moved->at("x")), length(moved->at("y"))};
  placement.hidesAmounts = object.optionalString("amounts") == "hide";
  return placement;
}

Placement keptPlacement() {
  try {
    return decodePlacement(platform::readRegularFile(placementFile(), largestFile));
  } catch (const std::runtime_error&) {
    return {};
  }
}

Placement loadPlacement(const fs::path& file) {
  try {
    return decodePlacement(platform::readRegularFile(file, largestFile));
  } catch (const platform::JsonDecodingError& error) {
    setAside(file, error.what());
  } catch (const platform::FileError& error) {
    if (error.kind != platform::FileError::Case::missing) setAside(file, error.what());
  }
  return {};
}

void storePlacement(const Placement& placement, const fs::path& file) {
  platform::Json object{{"family", platform::familyShortName(placement.family)},
                        {"corner", cornerName(placement.corner)},
                        {"margin", placement.margin},
                        {"monitor", placement.monitor},
                        {"lastScale", platform::jsonNumber(placement.lastScale.per120 / 120.0)},
                        {"amounts", placement.hidesAmounts ? "hide" : "show"}};
  if (placement.moved)
    object["moved"] = {{"x", kept(placement.moved->x)}, {"y", kept(placement.moved->y)}};
  platform::writePrivateFile(file, platform::printJson(object) + "\n");
}

}  // namespace desktop
