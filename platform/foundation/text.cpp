#include "platform/foundation/text.hpp"

#include <locale.h>
#include <stdlib.h>
#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace platform {

namespace {

icu::UnicodeString unicodeText(std::string_view bytes) {
  return icu::UnicodeString::fromUTF8({bytes.data(), static_cast<int32_t>(bytes.size())});
}

std::string utf8(const icu::UnicodeString& text) {
  std::string bytes;
  return text.toUTF8String(bytes);
}

}  // namespace

std::string repairedUtf8(std::string_view bytes) { return utf8(unicodeText(bytes)); }

std::string oneLine(std::string_view text) {
  constexpr int32_t mostCharacters = 300;
  auto line = unicodeText(text);
  for (int32_t i = 0; i < line.length(); ++i) {
    const auto type = u_charType(line.charAt(i));
    const bool breaks = type == U_CONTROL_CHAR || type == U_FORMAT_CHAR ||
                        type == U_LINE_SEPARATOR || type == U_PARAGRAPH_SEPARATOR;
    if (breaks) line.setCharAt(i, u' ');
  }
  if (line.truncate(mostCharacters)) line.append(u'\u2026');
  return utf8(line);
}

std::string drawableUtf8(std::string_view bytes) {
  auto text = unicodeText(bytes);
  for (int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
    const UChar32 character = text.char32At(i);
    if (U_IS_UNICODE_NONCHAR(character)) text.replace(i, U16_LENGTH(character), UChar32{0xFFFD});
  }
  return utf8(text);
}

std::optional<double> numberFromText(std::string_view text) {
  constexpr std::string_view whiteSpace = " \t\n\v\f\r";
  if (text.empty() || whiteSpace.find(text.front()) != std::string_view::npos) return std::nullopt;
  static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
  const std::string terminated(text);
  char* end = nullptr;
  const double number = strtod_l(terminated.c_str(), &end, cLocale);
  if (end != terminated.c_str() + terminated.size()) return std::nullopt;
  return number;
}

std::vector<std::string> graphemeClusters(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::BreakIterator> breaks(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  if (U_FAILURE(status)) return {std::string(text)};
  const auto whole = unicodeText(text);
  breaks->setText(whole);
  std::vector<std::string> clusters;
  int32_t start = breaks->first();
  for (int32_t end = breaks->next(); end != icu::BreakIterator::DONE; end = breaks->next()) {
    clusters.push_back(utf8(whole.tempSubStringBetween(start, end)));
    start = end;
  }
  return clusters;
}

bool isNumeric(std::string_view cluster) {
  if (cluster.empty()) return false;
  const UChar32 first = unicodeText(cluster).char32At(0);
  return u_getIntPropertyValue(first, UCHAR_NUMERIC_TYPE) != U_NT_NONE;
}

}  // namespace platform
