#pragma once

#include <string>

namespace companion {

/// The user-defaults key of the signed-in account's name.
inline constexpr const char* accountNameKey = "account.name";

/// Keeps the name that the account with that resource name has for people.
void keepAccountName(const std::string& account, const std::string& name);

/// The name that was kept for that account; empty when there is none.
std::string keptAccountName(const std::string& account);

}  // namespace companion
