#include "companion/news/plain_text.hpp"

#include <libxml/HTMLparser.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "platform/foundation/raii.hpp"
#include "platform/foundation/text.hpp"

namespace companion::news {

namespace {

using Document = platform::Owned<xmlDoc, xmlFreeDoc>;

constexpr std::size_t largestHtml = 64U << 10U;
constexpr std::int32_t mostCharacters = 1000;

std::string_view view(const xmlChar* text) {
  return text == nullptr ? std::string_view() : reinterpret_cast<const char*>(text);
}

bool isAny(std::string_view name, std::initializer_list<std::string_view> any) {
  return std::find(any.begin(), any.end(), name) != any.end();
}

/// The library bounds how deep elements lie in one another.
void collect(const xmlNode* node, std::string& words) {
  for (; node != nullptr; node = node->next) {
    const auto name = view(node->name);
    if (node->type == XML_TEXT_NODE) words += view(node->content);
    if (node->type != XML_ELEMENT_NODE) continue;
    const bool isInline = isAny(name, {"a", "b", "i", "u", "em", "strong", "span", "code", "font"});
    if (!isInline) words += ' ';
    if (!isAny(name, {"script", "style", "head"})) collect(node->children, words);
    if (!isInline) words += ' ';
  }
}

/// White space, line breaks and what cannot be seen become single spaces.
std::string collapsed(const std::string& words) {
  const auto text = icu::UnicodeString::fromUTF8(words);
  icu::UnicodeString line;
  for (std::int32_t i = 0; i < text.length() && line.length() < mostCharacters;
       i = text.moveIndex32(i, 1)) {
    const UChar32 character = text.char32At(i);
    const auto type = u_charType(character);
    const bool isGap = u_isUWhiteSpace(character) != 0 || type == U_CONTROL_CHAR;
    if (!isGap) {
      line.append(character);
    } else if (!line.isEmpty() && !line.endsWith(u' ')) {
      line.append(u' ');
    }
  }
  if (line.length() >= mostCharacters) line.append(u'\u2026');
  std::string result;
  return line.trim().toUTF8String(result);
}

}  // namespace

std::string plainText(const std::string& html) {
  const auto text = platform::repairedUtf8(std::string_view(html).substr(0, largestHtml));
  constexpr int options =
      HTML_PARSE_RECOVER | HTML_PARSE_NONET | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING;
  // An element around it keeps a text without any from being taken for something else.
  const auto wrapped = "<div>" + text + "</div>";
  const Document document(
      htmlReadMemory(wrapped.data(), static_cast<int>(wrapped.size()), nullptr, "UTF-8", options));
  if (!document) return platform::oneLine(text);
  std::string words;
  collect(xmlDocGetRootElement(document.get()), words);
  return collapsed(words);
}

}  // namespace companion::news
