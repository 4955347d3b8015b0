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

/// The languages whose string tables are wanted, most preferred first: the preferred ones, else the
/// current locale's, up to the first English one. The keys are English, so a table of a language
/// that stands behind it is never wanted.
std::vector<std::string> stringTableLanguages();

}  // namespace platform
