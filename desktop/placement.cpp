#include "desktop/placement.hpp"

#include <glib.h>
#include <glib/gstdio.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>

#include "platform/foundation/json.hpp"

namespace desktop {

namespace fs = std::filesystem;

namespace {

constexpr int largestLength = 100'000;

const std::map<std::string, Corner>& corners() {
  static const std::map<std::string, Corner> names{{"top-left", Corner::topLeft},
                                                   {"top-right", Corner::topRight},
                                                   {"bottom-left", Corner::bottomLeft},
                                                   {"bottom-right", Corner::bottomRight}};
  return names;
}

int length(const platform::JsonDecoder& value) {
  const auto number = value.integer();
  if (number < -largestLength || number > largestLength)
    throw platform::JsonDecodingError("a length is out of range");
  return static_cast<int>(number);
}

Placement decode(const std::string& document) {
  const platform::JsonDecoder object(document);
  Placement placement;
  placement.family = object.at("family").string();
  if (familySize(placement.family).width == 0) throw platform::JsonDecodingError("family: unknown");
  const auto corner = cornerFromName(object.at("corner").string());
  if (!corner) throw platform::JsonDecodingError("corner: unknown");
  placement.corner = *corner;
  placement.margin = length(object.at("margin"));
  placement.monitor = object.optionalString("monitor").value_or("");
  placement.lastScale = static_cast<int>(
      std::clamp<std::int64_t>(object.optionalInteger("lastScale").value_or(1), 1, 8));
  if (const auto moved = object.optionalAt("moved"))
    placement.moved = Point{length(moved->at("x")), length(moved->at("y"))};
  return placement;
}

}  // namespace

std::optional<Corner> cornerFromName(const std::string& name) {
  const auto found = corners().find(name);
  return found == corners().end() ? std::nullopt : std::optional(found->second);
}

std::string cornerName(Corner corner) {
  for (const auto& [name, known] : corners()) {
    if (known == corner) return name;
  }
  return "";
}

Area familySize(const std::string& family) {
  if (family == "small") return {0, 0, 170, 170};
  if (family == "medium") return {0, 0, 364, 170};
  if (family == "large") return {0, 0, 364, 382};
  return {};
}

Point position(const Placement& placement, const Area& workArea) {
  const auto size = familySize(placement.family);
  const int mostRight = workArea.width - size.width;
  const int mostDown = workArea.height - size.height;
  const bool left = placement.corner == Corner::topLeft || placement.corner == Corner::bottomLeft;
  const bool top = placement.corner == Corner::topLeft || placement.corner == Corner::topRight;
  const Point wished =
      placement.moved.value_or(Point{left ? placement.margin : mostRight - placement.margin,
                                     top ? placement.margin : mostDown - placement.margin});
  return {workArea.x + std::clamp(wished.x, 0, std::max(0, mostRight)),
          workArea.y + std::clamp(wished.y, 0, std::max(0, mostDown))};
}

fs::path placementFile() {
  return fs::path(g_get_user_config_dir()) / "velmora-desktop" / "placement.json";
}

Placement loadPlacement(const fs::path& file) {
  std::error_code ignored;
  if (!fs::exists(file, ignored)) return {};
  std::ifstream stream(file, std::ios::binary);
  const std::string document{std::istreambuf_iterator<char>(stream), {}};
  try {
    return decode(document);
  } catch (const platform::JsonDecodingError& error) {
    g_printerr("velmora-desktop: %s is damaged (%s); it is set aside and the defaults are used\n",
               file.c_str(), error.what());
    fs::rename(file, file.string() + ".damaged", ignored);
    return {};
  }
}

bool savePlacement(const Placement& placement, const fs::path& file) {
  platform::Json object{{"family", placement.family},
                        {"corner", cornerName(placement.corner)},
                        {"margin", placement.margin},
                        {"monitor", placement.monitor},
                        {"lastScale", placement.lastScale}};
  if (placement.moved) object["moved"] = {{"x", placement.moved->x}, {"y", placement.moved->y}};
  const auto document = platform::printJson(object) + "\n";
  g_mkdir_with_parents(file.parent_path().c_str(), 0700);
  // Written beside the old one and moved into its place.
  return g_file_set_contents_full(file.c_str(), document.data(),
                                  static_cast<gssize>(document.size()),
                                  G_FILE_SET_CONTENTS_CONSISTENT, 0600, nullptr) != FALSE;
}

}  // namespace desktop
