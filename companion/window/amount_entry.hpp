#pragma once

#include <string>

#include "companion/window/widgets.hpp"

namespace companion::window {

/// A number of the user's locale, above zero, that can be typed and stepped.
GtkWidget* makeAmountEntry(double step);

/// Shows an amount with the fraction digits of a currency (ISO 4217); an amount that is shown
/// already stays as it was typed.
void showAmount(GtkWidget* entry, double amount, const std::string& currency);

double amountOf(GtkWidget* entry);

}  // namespace companion::window
