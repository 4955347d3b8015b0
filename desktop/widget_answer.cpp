#include "desktop/widget_answer.hpp"

#include <algorithm>
#include <string_view>

#include "desktop/schedule.hpp"
#include "platform/foundation/files.hpp"
#include "platform/foundation/json.hpp"

namespace desktop {

namespace {

constexpr std::size_t largestPicture = 64U << 20U;

/// The size that a PNG file claims in its first chunk (PNG standard, section 11.2.2), so that a
/// picture of absurd size is never decoded.
bool hasSize(std::string_view png, Extent size) {
  const auto number = [png](std::size_t at) {
    int value = 0;
    for (std::size_t i = at; i < at + 4; ++i)
      value =
          static_cast<int>(static_cast<unsigned>(value) << 8U | static_cast<unsigned char>(png[i]));
    return value;
  };
  return png.size() >= 24 && png.starts_with("\x89PNG\r\n\x1a\n") && number(16) == size.width &&
         number(20) == size.height;
}

cairo_status_t readBytes(void* closure, unsigned char* bytes, unsigned count) {
  auto& rest = *static_cast<std::string_view*>(closure);
  if (rest.size() < count) return CAIRO_STATUS_READ_ERROR;
  std::copy_n(rest.begin(), count, bytes);
  rest.remove_prefix(count);
  return CAIRO_STATUS_SUCCESS;
}

/// Signed in or not; a widget of another make need not say.
bool readConnection(const platform::JsonDecoder& entry) {
  const auto content = entry.optionalAt("content");
  if (!content || !content->contains("isConnected")) return true;
  return content->at("isConnected").boolean();
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
    answer.isConnected = readConnection(entries.front());
    return answer;
  } catch (const platform::JsonDecodingError&) {
    return std::nullopt;
  }
}

Picture loadPicture(const std::filesystem::path& file, Extent size) {
  std::string bytes;
  try {
    bytes = platform::readRegularFile(file, largestPicture);
  } catch (const platform::FileError&) {
    return nullptr;
  }
  if (!hasSize(bytes, size)) return nullptr;
  std::string_view rest = bytes;
  Picture picture(cairo_image_surface_create_from_png_stream(readBytes, &rest));
  const bool whole = cairo_surface_status(picture.get()) == CAIRO_STATUS_SUCCESS &&
                     cairo_image_surface_get_width(picture.get()) == size.width &&
                     cairo_image_surface_get_height(picture.get()) == size.height;
  return whole ? std::move(picture) : nullptr;
}

}  // namespace desktop
