#pragma once

#include <adwaita.h>

namespace companion::window {

/// Binds the keys of the window's actions.
void bindShortcuts(GtkApplication* application);

/// The window that lists them.
void showShortcuts(GtkWindow* parent);

}  // namespace companion::window
