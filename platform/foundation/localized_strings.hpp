#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace platform {

/// An argument of a localized format: an integer for "%lld", a text for "%s".
using FormatArgument = std::variant<std::int64_t, std::string>;

/// Reads the program's string tables (gettext catalogs) for the user's languages, whatever locales
/// the C library has. To be called at the start of the program, before any other thread, and again
/// after the languages have changed; before it, every text is its key.
void loadStringTables();

/// The language of the first table that was found, the language of most texts; "en" without one.
std::string textLanguage();

/// The text for a key in the program's string table for the user's language; the key itself
/// without a translation.
std::string localizedString(const char* key);

/// The same, with printf placeholders replaced by the arguments: "%lld" and "%s" take the next
/// one, "%2$s" and "%2$lld" the numbered one, "%%" is a percent sign. Texts are inserted whole,
/// whatever bytes they hold.
std::string localizedFormat(const char* key, const std::vector<FormatArgument>& arguments);

}  // namespace platform
