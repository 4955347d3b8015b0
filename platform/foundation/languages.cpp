#include "platform/foundation/languages.hpp"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <sstream>

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

bool isEnglish(const std::string& language) {
  return language == "en" || language.starts_with("en_") || language.starts_with("en-");
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

std::vector<std::string> stringTableLanguages() {
  auto languages = preferredLanguages();
  if (languages.empty()) languages.push_back(currentLocaleIdentifier());
  languages.erase(std::find_if(languages.begin(), languages.end(), isEnglish), languages.end());
  return languages;
}

}  // namespace platform
