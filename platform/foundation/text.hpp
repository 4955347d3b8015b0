#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// Decodes bytes as UTF-8, each ill-formed sequence becoming U+FFFD. Never fails, trims nothing.
std::string repairedUtf8(std::string_view bytes);

/// A text of unknown origin for one line of a terminal: control characters and line breaks become
/// spaces, ill-formed sequences U+FFFD, and what goes beyond 300 characters is cut.
std::string oneLine(std::string_view text);

/// The same, and each noncharacter (the Unicode Standard, section 23.7) becoming U+FFFD, too: not
/// every format of pictures takes them.
std::string drawableUtf8(std::string_view bytes);

/// A number as C's strtod reads it in the C locale (sign, exponent, hexadecimal, inf and nan
/// included). The whole text must be the number: white space in front, anything behind it, or an
/// empty text make it absent.
std::optional<double> numberFromText(std::string_view text);

/// The user-perceived characters of a UTF-8 text (extended grapheme clusters, UAX #29), in order.
std::vector<std::string> graphemeClusters(std::string_view text);

/// Whether a cluster's first character has a numeric type in Unicode: digits, fractions, numerals.
bool isNumeric(std::string_view cluster);

}  // namespace platform
