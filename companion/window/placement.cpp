#include "companion/window/placement.hpp"

#include <glib.h>

#include <algorithm>

#include "platform/foundation/files.hpp"
#include "platform/foundation/json.hpp"

namespace companion::window {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t largestFile = 64U << 10U;

/// The value where it is one of those that are known.
void take(std::string& field, const std::optional<std::string>& value,
          std::initializer_list<std::string_view> known) {
  if (value && std::find(known.begin(), known.end(), *value) != known.end()) field = *value;
}

}  // namespace

fs::path placementFile() {
  return fs::path(g_get_user_config_dir()) / "velmora-desktop" / "placement.json";
}

Placement readPlacement(std::string_view json) {
  try {
    const platform::JsonDecoder object(json);
    Placement placement;
    take(placement.family, object.optionalString("family"), {"small", "medium", "large"});
    take(placement.corner, object.optionalString("corner"),
         {"top-left", "top-right", "bottom-left", "bottom-right"});
    placement.monitor = object.optionalString("monitor").value_or("");
    placement.isMoved = object.optionalAt("moved").has_value();
    return placement;
  } catch (const platform::JsonDecodingError&) {
    return {};
  }
}

Placement loadPlacement() {
  try {
    return readPlacement(platform::readRegularFile(placementFile(), largestFile));
  } catch (const platform::FileError&) {
    return {};
  }
}

std::vector<std::string> optionsFor(const Placement& placement) {
  std::vector<std::string> options{"--family", placement.family, "--monitor", placement.monitor};
  if (!placement.isMoved) options.insert(options.end(), {"--corner", placement.corner});
  return options;
}

std::vector<std::string> optionsFor(const Placement& placement, const Placement& before) {
  std::vector<std::string> options;
  if (placement.family != before.family)
    options.insert(options.end(), {"--family", placement.family});
  if (placement.monitor != before.monitor)
    options.insert(options.end(), {"--monitor", placement.monitor});
  if (!placement.isMoved && (placement.corner != before.corner || before.isMoved))
    options.insert(options.end(), {"--corner", placement.corner});
  return options;
}

}  // namespace companion::window
