#pragma once

#include "companion/window/widgets.hpp"

namespace companion::window {

/// A ring in the manner of the widget's own, for a share from 0 to 1, green once it is whole. It
/// says nothing to a screen reader: the text beside it does. The diameter is in points.
GtkWidget* makeRing(int diameter);
void setShare(GtkWidget* ring, double share);

}  // namespace companion::window
