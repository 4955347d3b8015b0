#pragma once

#include <gtk/gtk.h>

namespace companion::window {

/// Lays two children out beside each other, a text and what belongs to it at the end, or below
/// each other where the text would get too narrow: in a small window, or with large letters.
GtkLayoutManager* makeFoldingLayout();

}  // namespace companion::window
