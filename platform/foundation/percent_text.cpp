#include "platform/foundation/percent_text.hpp"

#include <unicode/locid.h>
#include <unicode/numberformatter.h>

#include "platform/foundation/formatting.hpp"

namespace platform {

namespace {

std::string format(double percent, int fractionDigits, UNumberSignDisplay sign,
                   const std::string& locale) {
  namespace number = icu::number;
  UErrorCode status = U_ZERO_ERROR;
  const auto text = number::NumberFormatter::withLocale(icu::Locale(locale.c_str()))
                        .unit(icu::NoUnit::percent())
                        .precision(number::Precision::fixedFraction(fractionDigits))
                        .roundingMode(UNUM_ROUND_HALFEVEN)
                        .sign(sign)
                        .formatDouble(percent, status)
                        .toString(status);
  if (U_FAILURE(status)) return plainDecimalText(percent, fractionDigits) + " %";
  std::string bytes;
  return text.toUTF8String(bytes);
}

}  // namespace

std::string percentText(double percent, int fractionDigits, const std::string& locale) {
  return format(percent, fractionDigits, UNUM_SIGN_AUTO, locale);
}

std::string changeText(double percent, const std::string& locale) {
  return format(percent, 0, UNUM_SIGN_EXCEPT_ZERO, locale);
}

}  // namespace platform
