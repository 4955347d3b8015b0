#include "desktop/widget_answer.hpp"

#include <array>
#include <cstring>
#include <fstream>

#include "desktop/schedule.hpp"
#include "platform/foundation/json.hpp"

namespace desktop {

namespace {

/// The size that a PNG file claims in its first chunk (PNG standard, section 11.2.2), so that a
/// picture of absurd size is never decoded.
bool hasSize(const std::string& file, int width, int height) {
  std::array<unsigned char, 24> head{};
  std::ifstream stream(file, std::ios::binary);
  stream.read(reinterpret_cast<char*>(head.data()), head.size());
  const auto number = [&head](std::size_t at) {
    return (head[at] << 24) | (head[at + 1] << 16) | (head[at + 2] << 8) | head[at + 3];
  };
  return stream && std::memcmp(head.data(), "\x89PNG\r\n\x1a\n", 8) == 0 && number(16) == width &&
         number(20) == height;
}

}  // namespace

std::optional<WidgetAnswer> parseAnswer(const std::string& output) {
  try {
    const platform::JsonDecoder object(output);
    const auto entries = object.at("entries").array();
    if (entries.empty()) return std::nullopt;
    WidgetAnswer answer;
    for (const auto& phrase : entries.front().at("accessibility").array())
      answer.phrases.push_back(phrase.string());
    if (const auto policy = object.optionalAt("policy"))
      answer.reloadDate = unixSecondsFromIso(policy->at("after").string());
    return answer;
  } catch (const platform::JsonDecodingError&) {
    return std::nullopt;
  }
}

Picture loadPicture(const std::string& file, int width, int height) {
  if (!hasSize(file, width, height)) return nullptr;
  Picture picture(cairo_image_surface_create_from_png(file.c_str()));
  const bool whole = cairo_surface_status(picture.get()) == CAIRO_STATUS_SUCCESS &&
                     cairo_image_surface_get_width(picture.get()) == width &&
                     cairo_image_surface_get_height(picture.get()) == height;
  return whole ? std::move(picture) : nullptr;
}

}  // namespace desktop
