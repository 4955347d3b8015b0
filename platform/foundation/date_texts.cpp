#include "platform/foundation/date_texts.hpp"

#include <unicode/datefmt.h>
#include <unicode/dtitvfmt.h>
#include <unicode/locid.h>

#include <memory>

namespace platform {

namespace {

constexpr double millisecondsPerSecond = 1000;

UDate icuDate(Instant instant) { return unixSeconds(instant) * millisecondsPerSecond; }

icu::Locale gregorian(const std::string& name) {
  icu::Locale locale(name.c_str());
  UErrorCode status = U_ZERO_ERROR;
  locale.setKeywordValue("calendar", "gregorian", status);
  return locale;
}

std::string utf8(const icu::UnicodeString& text) {
  std::string bytes;
  return text.toUTF8String(bytes);
}

}  // namespace

std::function<std::string(Instant)> dateWriter(const std::string& locale,
                                               const std::string& skeleton) {
  UErrorCode status = U_ZERO_ERROR;
  const std::shared_ptr<icu::DateFormat> format(icu::DateFormat::createInstanceForSkeleton(
      icu::UnicodeString::fromUTF8(skeleton), gregorian(locale), status));
  if (U_FAILURE(status)) return [](Instant) { return std::string(); };
  format->adoptTimeZone(icu::TimeZone::getGMT()->clone());
  return [format](Instant instant) {
    icu::UnicodeString text;
    return utf8(format->format(icuDate(instant), text));
  };
}

std::string dateRangeText(Instant first, Instant last, const std::string& locale,
                          const std::string& skeleton) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::DateIntervalFormat> format(icu::DateIntervalFormat::createInstance(
      icu::UnicodeString::fromUTF8(skeleton), gregorian(locale), status));
  if (U_FAILURE(status)) return "";
  format->adoptTimeZone(icu::TimeZone::getGMT()->clone());
  const icu::DateInterval range(icuDate(first), icuDate(last));
  icu::UnicodeString text;
  icu::FieldPosition unused;
  format->format(&range, text, unused, status);
  return U_FAILURE(status) ? "" : utf8(text);
}

}  // namespace platform
