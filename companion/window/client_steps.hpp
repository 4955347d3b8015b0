#pragma once

#include "companion/window/widgets.hpp"

namespace companion::window {

/// A row that unfolds into the way to a client file, step by step, with the provider's pages.
GtkWidget* makeClientSteps();

}  // namespace companion::window
