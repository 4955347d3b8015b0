#pragma once

#include <gtk/gtk.h>

#include "desktop/menu/menu_call.hpp"

namespace desktop::menu {

/// A menu that is shown, for as long as GTK's main loop runs.
struct PopUp {
  Call call;
  GtkWidget* menu = nullptr;
  GtkWidget* layer = nullptr;  // on Wayland: a window for it to stand on
};

/// Shows the menu at the place of the call; the main loop ends with it.
void show(PopUp& popUp);

}  // namespace desktop::menu
