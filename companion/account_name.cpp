#include "companion/account_name.hpp"

#include "platform/foundation/user_defaults.hpp"

namespace companion {

namespace {

/// Between the account and its name; in neither of them.
constexpr char separator = '\n';

}  // namespace

void keepAccountName(const std::string& account, const std::string& name) {
  platform::UserDefaults::standard().setString(accountNameKey, account + separator + name);
}

std::string keptAccountName(const std::string& account) {
  const auto kept = platform::UserDefaults::standard().string(accountNameKey).value_or("");
  const auto start = account + separator;
  return kept.starts_with(start) ? kept.substr(start.size()) : "";
}

}  // namespace companion
