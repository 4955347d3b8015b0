#pragma once

#include <cairo.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktop/geometry.hpp"
#include "platform/foundation/raii.hpp"

namespace desktop {

using Picture = platform::Owned<cairo_surface_t, cairo_surface_destroy>;

/// What a widget program printed, as far as the host needs it.
struct WidgetAnswer {
  std::vector<std::string> phrases;  ///< for people who do not look
  std::optional<double> reloadDate;  ///< Unix seconds
  bool isConnected = true;           ///< whether the widget found its user signed in
};

/// Reads a printed answer; absent unless it holds an entry.
std::optional<WidgetAnswer> parseAnswer(const std::string& output);

/// Loads a picture; null unless it is a regular PNG file of exactly that many pixels.
Picture loadPicture(const std::filesystem::path& file, Extent size);

}  // namespace desktop
