#include "platform/foundation/localized_strings.hpp"

#include <boost/locale/gnu_gettext.hpp>
#include <boost/locale/message.hpp>

#include <regex>

#include "platform/foundation/bundle.hpp"
#include "platform/foundation/files.hpp"
#include "platform/foundation/languages.hpp"

namespace platform {

namespace {

namespace gettext = boost::locale::gnu_gettext;
using Catalog = boost::locale::message_format<char>;

constexpr std::size_t largestCatalog = 4U << 20U;

struct StringTable {
  std::string language;
  std::locale locale;  ///< owns the catalog

  [[nodiscard]] const char* find(const char* key) const {
    return std::use_facet<Catalog>(locale).get(0, nullptr, key);
  }
};

/// Those that were found for the user's languages, most preferred first.
std::vector<StringTable>& stringTables() {
  static std::vector<StringTable> tables;
  return tables;
}

/// Nothing for a file that is not there, which the library takes for a missing catalog.
std::vector<char> readCatalog(const std::string& file, const std::string&) {
  try {
    const auto bytes = readRegularFile(file, largestCatalog);
    return {bytes.begin(), bytes.end()};
  } catch (const FileError&) {
    return {};
  }
}

std::locale catalogLocale(const std::string& language) {
  gettext::messages_info info;
  const auto end = language.find_first_of("_-");
  info.language = language.substr(0, end);
  if (end != std::string::npos) info.country = language.substr(end + 1);
  info.encoding = "UTF-8";
  for (const auto& folder : resourceFolders()) info.paths.push_back(folder / "locale");
  info.domains.emplace_back(std::string(mainBundleName));
  info.callback = readCatalog;
  return {std::locale::classic(), gettext::create_messages_facet<char>(info)};
}

std::string text(const FormatArgument& argument) {
  if (const auto* integer = std::get_if<std::int64_t>(&argument)) return std::to_string(*integer);
  return std::get<std::string>(argument);
}

}  // namespace

void loadStringTables() {
  stringTables().clear();
  for (const auto& language : stringTableLanguages()) {
    try {
      StringTable table{language, catalogLocale(language)};
      // Every catalog has its header under the empty key.
      if (table.find("") != nullptr) stringTables().push_back(std::move(table));
    } catch (const std::exception&) {
      continue;  // a damaged catalog is none: the next language's, or the keys, stand in
    }
  }
}

std::string textLanguage() {
  return stringTables().empty() ? "en" : stringTables().front().language;
}

std::string localizedString(const char* key) {
  if (*key == '\0') return "";  // a catalog has its header under this one
  for (const auto& table : stringTables()) {
    if (const char* found = table.find(key)) return found;
  }
  return key;
}

std::string localizedFormat(const char* key, const std::vector<FormatArgument>& arguments) {
  static const std::regex placeholder("%(?:([1-9])\\$)?(lld|s)|%%");
  const std::string format = localizedString(key);
  std::string result;
  std::size_t next = 0;
  std::size_t done = 0;
  for (auto match = std::sregex_iterator(format.begin(), format.end(), placeholder);
       match != std::sregex_iterator(); ++match) {
    const auto position = static_cast<std::size_t>(match->position());
    result += format.substr(done, position - done);
    done = position + static_cast<std::size_t>(match->length());
    if (match->str() == "%%") {
      result += '%';
      continue;
    }
    const auto index = (*match)[1].matched ? std::stoul((*match)[1].str()) - 1 : next++;
    if (index < arguments.size()) result += text(arguments[index]);
  }
  return result + format.substr(done);
}

}  // namespace platform
