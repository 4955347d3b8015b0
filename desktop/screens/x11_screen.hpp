#pragma once

#include "desktop/screens/screen.hpp"

namespace desktop {

/// A screen of an X server. Throws std::runtime_error when none can be reached.
std::unique_ptr<Screen> openX11(const ScreenEvents& events, const Placement& placement);

}  // namespace desktop
