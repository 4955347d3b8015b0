#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/views/geometry.hpp"

namespace platform {

/// The sizes in which a widget can be placed.
enum class WidgetFamily { systemSmall, systemMedium, systemLarge, systemExtraLarge };

/// "systemSmall" and so on.
std::string familyName(WidgetFamily family);

/// "small" and so on.
std::string familyShortName(WidgetFamily family);

/// Reads "systemSmall" or its short form "small"; absent for any other text.
std::optional<WidgetFamily> familyFromName(std::string_view name);

/// The size of a placed widget in points.
Size familySize(WidgetFamily family);

}  // namespace platform
