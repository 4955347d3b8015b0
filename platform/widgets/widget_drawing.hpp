#pragma once

#include <optional>
#include <string>

#include "platform/views/draw_list.hpp"
#include "platform/views/views.hpp"
#include "platform/widgets/widget_family.hpp"

namespace platform {

/// What a widget shows of an entry: its content, and the background of its container.
struct WidgetView {
  View content;
  LinearGradient containerBackground;
};

/// Lays a widget out in the size of its family, in the direction of the user's language. The view
/// finds the family in its environment.
DrawList drawWidget(const WidgetView& view, WidgetFamily family, double scale);

/// The formats of pictures.
enum class PictureFormat { png, svg, pdf, json };

/// By a file name's ending; absent for any other.
std::optional<PictureFormat> pictureFormat(const std::string& fileName);

/// The picture as a file's bytes; throws std::runtime_error.
std::string picture(const DrawList& list, PictureFormat format);

}  // namespace platform
