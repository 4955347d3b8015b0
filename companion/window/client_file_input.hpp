#pragma once

#include "companion/window/session.hpp"
#include "companion/window/widgets.hpp"

namespace companion::window {

/// Lets the user choose a client file, in a dialog of that window.
void chooseClientFile(GtkWindow* window, Session& session);

/// Takes a client file that is dropped on a widget, alone or in a list.
void acceptClientFile(GtkWidget* widget, Session& session);

}  // namespace companion::window
