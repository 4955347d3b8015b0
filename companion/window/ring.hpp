#pragma once

#include "companion/window/widgets.hpp"

namespace companion::window {

/// A small ring in the manner of the widget's own, for a share from 0 to 1. It says nothing to a
/// screen reader: the text beside it does.
GtkWidget* makeRing();
void setShare(GtkWidget* ring, double share);

}  // namespace companion::window
