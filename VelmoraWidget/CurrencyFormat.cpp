#include "VelmoraWidget/CurrencyFormat.hpp"

#include "platform/foundation/formatting.hpp"
#include "platform/foundation/languages.hpp"

namespace velmora {

std::string displayLocale() {
  const auto languages = platform::preferredLanguages();
  return languages.empty() ? platform::currentLocaleIdentifier() : languages.front();
}

std::string formatCurrency(double amount, const std::string& currencyCode) {
  constexpr int mostFractionDigits = 2;
  const auto text =
      platform::currencyText(amount, currencyCode, mostFractionDigits, displayLocale());
  return text ? *text : platform::plainDecimalText(amount, mostFractionDigits);
}

}  // namespace velmora
