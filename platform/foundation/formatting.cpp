#include "platform/foundation/formatting.hpp"

#include <unicode/datefmt.h>
#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/numberformatter.h>
#include <unicode/numfmt.h>
#include <unicode/smpdtfmt.h>
#include <unicode/ucurr.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>

#include "platform/foundation/text.hpp"

namespace platform {

namespace {

namespace number = icu::number;

constexpr double millisecondsPerSecond = 1000;

std::string utf8(const icu::UnicodeString& text) {
  std::string bytes;
  return text.toUTF8String(bytes);
}

/// ICU switches to the Julian calendar before 1582; the calendar here does not.
void keepGregorian(icu::Calendar* calendar) {
  auto* gregorian = dynamic_cast<icu::GregorianCalendar*>(calendar);
  if (gregorian == nullptr) return;
  UErrorCode status = U_ZERO_ERROR;
  gregorian->setGregorianChange(-std::numeric_limits<double>::infinity(), status);
}

std::optional<std::string> format(const number::LocalizedNumberFormatter& formatter, double value) {
  UErrorCode status = U_ZERO_ERROR;
  const auto text = formatter.formatDouble(value, status).toString(status);
  if (U_FAILURE(status)) return std::nullopt;
  return utf8(text);
}

number::LocalizedNumberFormatter withDigits(int fractionDigits, const std::string& locale) {
  return number::NumberFormatter::withLocale(icu::Locale(locale.c_str()))
      .precision(number::Precision::fixedFraction(fractionDigits))
      .roundingMode(UNUM_ROUND_HALFEVEN);
}

std::optional<icu::CurrencyUnit> currencyUnit(const std::string& code) {
  UErrorCode status = U_ZERO_ERROR;
  auto text = icu::UnicodeString::fromUTF8(code);
  icu::CurrencyUnit unit(icu::ConstChar16Ptr(text.getTerminatedBuffer()), status);
  if (U_FAILURE(status) || text.length() != 3) return std::nullopt;
  return unit;
}

std::unique_ptr<icu::SimpleDateFormat> dayFormat(const std::string& locale,
                                                 const std::string& pattern) {
  UErrorCode status = U_ZERO_ERROR;
  auto result = std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString::fromUTF8(pattern),
                                                        icu::Locale(locale.c_str()), status);
  if (U_FAILURE(status)) return nullptr;
  auto gregorian = std::make_unique<icu::GregorianCalendar>(*icu::TimeZone::getGMT(), status);
  keepGregorian(gregorian.get());
  result->adoptCalendar(gregorian.release());
  result->setLenient(false);
  return result;
}

}  // namespace

std::optional<std::string> decimalText(double number, int fractionDigits,
                                       const std::string& locale) {
  return format(withDigits(fractionDigits, locale), number);
}

std::optional<std::string> currencyText(double amount, const std::string& currencyCode,
                                        int mostFractionDigits, const std::string& locale) {
  const auto currency = currencyUnit(currencyCode);
  const auto ownDigits = currencyFractionDigits(currencyCode);
  if (!currency || !ownDigits) return std::nullopt;
  const int digits = std::min(*ownDigits, mostFractionDigits);
  return format(withDigits(digits, locale).unit(*currency), amount);
}

std::optional<int> currencyFractionDigits(const std::string& currencyCode) {
  const auto currency = currencyUnit(currencyCode);
  if (!currency) return std::nullopt;
  UErrorCode status = U_ZERO_ERROR;
  const int digits = ucurr_getDefaultFractionDigits(currency->getISOCurrency(), &status);
  return U_FAILURE(status) ? std::nullopt : std::optional(digits);
}

std::optional<double> decimalFromText(const std::string& text, const std::string& locale) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::NumberFormat> format(
      icu::NumberFormat::createInstance(icu::Locale(locale.c_str()), status));
  const auto whole = icu::UnicodeString::fromUTF8(text).trim();
  if (U_SUCCESS(status) && !whole.isEmpty()) {
    format->setLenient(false);  // else "12.5" would be 125 where the point groups
    icu::Formattable value;
    icu::ParsePosition position(0);
    format->parse(whole, value, position);
    const double number = value.getDouble(status);
    if (position.getErrorIndex() < 0 && position.getIndex() == whole.length() &&
        U_SUCCESS(status) && std::isfinite(number))
      return number;
  }
  const auto number = numberFromText(utf8(whole));
  return number && std::isfinite(*number) ? number : std::nullopt;
}

std::string plainDecimalText(double number, int fractionDigits) {
  char text[std::numeric_limits<double>::max_exponent10 + 64];
  std::snprintf(text, sizeof text, "%.*f", std::clamp(fractionDigits, 0, 32), number);
  return text;
}

std::string mediumDateText(Instant instant, const std::string& locale) {
  const std::unique_ptr<icu::DateFormat> format(
      icu::DateFormat::createDateInstance(icu::DateFormat::kMedium, icu::Locale(locale.c_str())));
  if (!format) return "";
  format->adoptTimeZone(icu::TimeZone::getGMT()->clone());
  if (auto* calendar = format->getCalendar()->clone()) {
    keepGregorian(calendar);
    format->adoptCalendar(calendar);
  }
  icu::UnicodeString text;
  return utf8(format->format(unixSeconds(instant) * millisecondsPerSecond, text));
}

std::string dateTimeText(Instant instant, const std::string& locale) {
  const std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
      icu::DateFormat::kMedium, icu::DateFormat::kShort, icu::Locale(locale.c_str())));
  icu::UnicodeString text;
  if (format) format->format(unixSeconds(instant) * millisecondsPerSecond, text);
  return utf8(text);
}

bool isRightToLeft(const std::string& locale) {
  return icu::Locale(locale.c_str()).isRightToLeft() != 0;
}

DayFormatter::DayFormatter(std::string locale, std::string pattern)
    : locale_(std::move(locale)), pattern_(std::move(pattern)) {}

std::string DayFormatter::text(Instant instant) const {
  const auto format = dayFormat(locale_, pattern_);
  icu::UnicodeString text;
  if (format) format->format(unixSeconds(instant) * millisecondsPerSecond, text);
  return utf8(text);
}

std::optional<Instant> DayFormatter::date(const std::string& text) const {
  const auto format = dayFormat(locale_, pattern_);
  if (!format) return std::nullopt;
  const auto whole = icu::UnicodeString::fromUTF8(text);
  icu::ParsePosition position(0);
  const UDate date = format->parse(whole, position);
  if (position.getErrorIndex() >= 0 || position.getIndex() != whole.length()) return std::nullopt;
  return instantFromUnixSeconds(date / millisecondsPerSecond);
}

}  // namespace platform
