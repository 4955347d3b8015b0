#pragma once

#include "companion/window/session.hpp"
#include "companion/window/widgets.hpp"

namespace companion::window {

/// The button that offers what helps.
GtkWidget* makeRemedyButton(Session& session, Remedy remedy, const std::string& page);

}  // namespace companion::window
