#pragma once

#include <initializer_list>
#include <string>

#include "companion/window/widgets.hpp"

namespace companion::window {

/// A page that says one thing in the middle, with what can be done below it.
GtkWidget* statusPage(const char* icon, const std::string& title,
                      std::initializer_list<GtkWidget*> children);
void setStatusTitle(GtkWidget* page, const std::string& title);
void setStatusDescription(GtkWidget* page, const std::string& text);

/// A button of such a page.
GtkWidget* pill(GtkWidget* button, bool isSuggested);

GtkWidget* largeSpinner(const std::string& label);

}  // namespace companion::window
