#pragma once

#include <string>
#include <vector>

namespace platform {

/// The user's preferred languages, most preferred first: those of `LANGUAGE`, as locale
/// identifiers without a character set ("fr_FR", "sr_Latn_RS"). Empty when it is not set.
std::vector<std::string> preferredLanguages();

/// The identifier of the current locale: the first of `LC_ALL`, `LC_MESSAGES` and `LANG` that is
/// set; "C", "POSIX" and nothing at all mean "en_US".
std::string currentLocaleIdentifier();

/// Prepares the process for string tables in the user's languages, whatever system locales are
/// generated. To be called at the start of the program, before any other thread, and again after
/// the variables above have been changed. Writes `LANGUAGE`.
void initializeLanguages();

}  // namespace platform
