#include "platform/foundation/formatting.hpp"

#include <unicode/datefmt.h>
#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/numberformatter.h>
#include <unicode/smpdtfmt.h>
#include <unicode/ucurr.h>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <memory>

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
  UErrorCode status = U_ZERO_ERROR;
  auto code = icu::UnicodeString::fromUTF8(currencyCode);
  const icu::CurrencyUnit currency(icu::ConstChar16Ptr(code.getTerminatedBuffer()), status);
  if (U_FAILURE(status) || code.length() != 3) return std::nullopt;
  const int ownDigits = ucurr_getDefaultFractionDigits(currency.getISOCurrency(), &status);
  if (U_FAILURE(status)) return std::nullopt;
  return format(withDigits(std::min(ownDigits, mostFractionDigits), locale).unit(currency), amount);
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
