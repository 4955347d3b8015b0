#pragma once

#include <vector>

#include "desktop/screens/monitors.hpp"
#include "desktop/screens/x11_display.hpp"

namespace desktop {

/// The monitors of the screen (RandR 1.5), the whole screen where the server knows none, in device
/// pixels. Never empty.
std::vector<Monitor> screenMonitors(const X11Display& display);

/// What panels leave free of a monitor (Extended Window Manager Hints), in device pixels.
Area workArea(const X11Display& display, const Monitor& monitor);

}  // namespace desktop
