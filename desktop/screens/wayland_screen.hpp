#pragma once

#include "desktop/screens/screen.hpp"
#include "desktop/screens/wayland_display.hpp"

namespace desktop {

/// A screen of a Wayland compositor, which must have a layer shell. Throws std::runtime_error, with
/// one line that says what to do, when the compositor takes no pictures.
std::unique_ptr<Screen> openWayland(std::unique_ptr<WaylandDisplay> display,
                                    const ScreenEvents& events, const Placement& placement);

}  // namespace desktop
