#pragma once

#include <optional>
#include <string>

#include "platform/foundation/instant.hpp"

namespace platform {

// Texts by the locale data of Unicode CLDR. A locale is given by its identifier ("fr_FR",
// "fr-FR", "en"); one that is not known formats as the root locale does. Numbers are rounded half
// to even on their shortest decimal form.

/// A decimal number with exactly that many fraction digits and the locale's grouping. Absent when
/// the locale data gives nothing.
std::optional<std::string> decimalText(double number, int fractionDigits,
                                       const std::string& locale);

/// An amount in the locale's currency style, with the fraction digits of the currency (ISO 4217),
/// at most `mostFractionDigits` of them. Absent when the code is none.
std::optional<std::string> currencyText(double amount, const std::string& currencyCode,
                                        int mostFractionDigits, const std::string& locale);

/// How many fraction digits a currency has (ISO 4217); absent when the code is none.
std::optional<int> currencyFractionDigits(const std::string& currencyCode);

/// A decimal number as it is typed in the locale ("1.234,5" in German), else as in C ("1234.5").
/// Absent unless the whole text is a finite one.
std::optional<double> decimalFromText(const std::string& text, const std::string& locale);

/// "%.2f" in the C locale, for any number of digits.
std::string plainDecimalText(double number, int fractionDigits);

/// The UTC day of an instant in the locale's medium date style ("21 mai 2026").
std::string mediumDateText(Instant instant, const std::string& locale);

/// An instant in the local time zone, in the locale's medium date and short time style ("23 Nov
/// 2026, 10:32").
std::string dateTimeText(Instant instant, const std::string& locale);

/// Whether the locale's language is written from right to left.
bool isRightToLeft(const std::string& locale);

/// Writes and reads UTC days by a fixed pattern of Unicode date fields (UTS #35) in a fixed
/// locale. Dates of all years are Gregorian.
class DayFormatter {
 public:
  DayFormatter(std::string locale, std::string pattern);

  [[nodiscard]] std::string text(Instant instant) const;
  /// Midnight UTC of the day; absent unless the whole text reads as a date.
  [[nodiscard]] std::optional<Instant> date(const std::string& text) const;

 private:
  std::string locale_;
  std::string pattern_;
};

}  // namespace platform
