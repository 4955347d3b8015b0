#include "platform/foundation/localized_strings.hpp"

#include <libintl.h>

#include <regex>

#include "platform/foundation/bundle.hpp"

namespace platform {

namespace {

std::string text(const FormatArgument& argument) {
  if (const auto* integer = std::get_if<std::int64_t>(&argument)) return std::to_string(*integer);
  return std::get<std::string>(argument);
}

}  // namespace

std::string localizedString(const char* key) {
  if (*key == '\0') return "";  // gettext answers this one with the table's header
  static const std::string domain(mainBundleName);
  return dgettext(domain.c_str(), key);
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
