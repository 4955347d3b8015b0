#include <glib.h>

#include <cstdint>
#include <string_view>

#include "VelmoraWidget/VelmoraSnapshot.hpp"
#include "desktop/placement.hpp"
#include "fuzz/state_folder.hpp"

// What the programs keep as JSON: a snapshot, and the widget's place. What was read is kept and
// read once more as it was.

namespace {

void keepSnapshot(std::string_view input) {
  try {
    const auto snapshot = velmora::decodeSnapshot(input);
    if (velmora::decodeSnapshot(velmora::encodeSnapshot(snapshot)) != snapshot) __builtin_trap();
  } catch (const platform::JsonDecodingError&) {
    return;  // refused
  }
}

void keepPlacement(std::string_view input) {
  static const fuzz::StateFolder folder;
  const auto file = folder.with("placement.json", input);
  const auto placement = desktop::loadPlacement(file);
  const auto size = desktop::sizeInPoints(placement.family);
  const auto place = desktop::position(placement, size, {0, 0, 1920, 1080}, placement.lastScale);
  if (place.x < 0 || place.y < 0 || place.x > 1920 || place.y > 1080) __builtin_trap();
  desktop::storePlacement(placement, file);
  if (desktop::loadPlacement(file) != placement) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  g_set_printerr_handler([](const char*) {});
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  keepSnapshot(input);
  keepPlacement(input);
  return 0;
}
