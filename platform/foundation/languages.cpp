#include "platform/foundation/languages.hpp"

#include <libintl.h>
#include <locale.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <sstream>

#include "platform/foundation/bundle.hpp"

// Part of the C library's interface, in none of its headers.
extern "C" int _nl_msg_cat_cntr;

namespace platform {

namespace {

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

/// "sr_RS.UTF-8@latin" to "sr_Latn_RS": the character set goes, a script modifier moves to its
/// place in the identifier, other modifiers go.
std::string localeIdentifier(const std::string& posixName) {
  const std::string name = posixName.substr(0, posixName.find_first_of(".@"));
  if (name.empty() || name == "C" || name == "POSIX") return "en_US";
  static const std::map<std::string, std::string> scripts{
      {"latin", "Latn"}, {"cyrillic", "Cyrl"}, {"devanagari", "Deva"}};
  const auto modifier = posixName.find('@');
  const auto script =
      modifier == std::string::npos ? scripts.end() : scripts.find(posixName.substr(modifier + 1));
  if (script == scripts.end()) return name;
  const auto language = name.substr(0, name.find('_'));
  return language + "_" + script->second + name.substr(language.size());
}

/// The languages for gettext, up to the first English one: the keys are English, so a table of a
/// language that stands behind it is never wanted. gettext wants underscores.
std::string stringTableLanguages() {
  auto languages = preferredLanguages();
  if (languages.empty()) languages.push_back(currentLocaleIdentifier());
  std::string list;
  for (auto& language : languages) {
    std::replace(language.begin(), language.end(), '-', '_');
    list += (list.empty() ? "" : ":") + language;
    if (language == "en" || language.starts_with("en_")) break;
  }
  return list;
}

}  // namespace

std::vector<std::string> preferredLanguages() {
  std::vector<std::string> languages;
  std::istringstream entries(environment("LANGUAGE"));
  for (std::string entry; std::getline(entries, entry, ':');) {
    if (!entry.empty()) languages.push_back(localeIdentifier(entry));
  }
  return languages;
}

std::string currentLocaleIdentifier() {
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const auto value = environment(variable);
    if (!value.empty()) return localeIdentifier(value);
  }
  return "en_US";
}

void initializeLanguages() {
  // gettext looks nothing up in the "C" locale; C.UTF-8 is part of the C library.
  setlocale(LC_ALL, "C.UTF-8");
  const std::string domain(mainBundleName);
  bindtextdomain(domain.c_str(), (resourceFolder() / "locale").c_str());
  bind_textdomain_codeset(domain.c_str(), "UTF-8");
  // gettext reads this variable alone; what it says of the preferred languages stays the same.
  setenv("LANGUAGE", stringTableLanguages().c_str(), 1);
  ++_nl_msg_cat_cntr;  // gettext's way to be told that the languages may have changed
}

}  // namespace platform
