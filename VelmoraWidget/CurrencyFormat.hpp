#pragma once

#include <string>

namespace velmora {

/// The identifier of the locale of every amount, number and date text: the user's first preferred
/// language, else the current locale.
std::string displayLocale();

/// An amount of money in the display locale's currency style, for an ISO 4217 code, with at most
/// two fraction digits. A code that is none gives two decimals without a currency sign.
std::string formatCurrency(double amount, const std::string& currencyCode);

}  // namespace velmora
