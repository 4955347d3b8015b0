#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// The sizes in which a widget can be placed.
enum class WidgetFamily { systemSmall, systemMedium, systemLarge, systemExtraLarge };

/// "systemSmall" and so on.
std::string familyName(WidgetFamily family);

/// Reads "systemSmall" or its short form "small"; absent for any other text.
std::optional<WidgetFamily> familyFromName(std::string_view name);

}  // namespace platform
