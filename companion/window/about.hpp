#pragma once

#include <adwaita.h>

namespace companion::window {

void showAbout(GtkWindow* parent);

}  // namespace companion::window
