#pragma once

#include <gtk/gtk.h>

#include <string>

#include "desktop/menu/menu_call.hpp"

namespace desktop::menu {

/// A menu with the widget's items. What the user chooses is written to `chosen`, which outlives it:
/// "family large", "corner top-left", "amounts hide", "refresh", "open" with what lets a window
/// come to the front, "quit".
GtkWidget* makeMenu(const Call& call, std::string& chosen);

}  // namespace desktop::menu
