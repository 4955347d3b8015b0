#pragma once

namespace companion::window {

/// The look that all windows of the program share: its few styles, its icon, and the writing
/// direction of the user's language. Called once, when the display is open.
void prepareAppearance();

}  // namespace companion::window
