#include "companion/window/window_size.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>

#include "platform/foundation/bundle.hpp"
#include "platform/foundation/files.hpp"
#include "platform/foundation/json.hpp"

namespace companion::window {

namespace {

constexpr const char* fileName = "window.json";
constexpr std::size_t largestFile = 4096;
constexpr std::int64_t smallest = 200;
constexpr std::int64_t largest = 10'000;

int length(const platform::JsonDecoder& value) {
  return static_cast<int>(std::clamp(value.integer(), smallest, largest));
}

}  // namespace

WindowSize loadWindowSize() {
  const auto folder = platform::stateFolder();
  if (!folder) return {};
  try {
    const platform::JsonDecoder object(platform::readRegularFile(*folder / fileName, largestFile));
    return {length(object.at("width")), length(object.at("height")),
            object.optionalInteger("maximized").value_or(0) != 0};
  } catch (const std::runtime_error&) {
    return {};
  }
}

void saveWindowSize(const WindowSize& size) {
  const auto folder = platform::stateFolder();
  if (!folder) return;
  const platform::Json object{
      {"width", size.width}, {"height", size.height}, {"maximized", size.isMaximized ? 1 : 0}};
  try {
    platform::writePrivateFile(*folder / fileName, platform::encodeJson(object));
  } catch (const platform::FileError&) {
    return;  // the next window has the size of the one before
  }
}

}  // namespace companion::window
