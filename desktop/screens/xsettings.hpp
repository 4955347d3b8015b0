#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace desktop {

/// The value of an integer setting in a property of the XSETTINGS protocol (version 0.5); absent
/// when it is not there, or when the property ends before it or is damaged.
std::optional<std::int32_t> xsettingsInteger(std::span<const std::uint8_t> property,
                                             std::string_view name);

/// The value of "Xft.dpi" among X resources ("name:\tvalue" lines); absent unless above zero.
std::optional<double> resourceDpi(std::string_view resources);

}  // namespace desktop
