#pragma once

#include "desktop/scale.hpp"
#include "desktop/screens/x11_display.hpp"

namespace desktop {

/// Device pixels per point of an X11 session, of the first of these that says it: GDK_SCALE in the
/// environment, the settings manager's window scaling factor, its text resolution, the resource
/// Xft.dpi. A settings manager is watched from then on: its properties change, it goes.
Scale sessionScale(const X11Display& display);

}  // namespace desktop
