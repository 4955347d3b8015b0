#pragma once

#include <string>

namespace companion {

// The pages that the browser ends on, in the user's language and without a resource from elsewhere.

/// Somebody was signed in. `account` may be empty.
std::string successPage(const std::string& account);

/// Nobody was signed in; `reason` says why and what to do.
std::string failurePage(const std::string& reason);

/// For a request that belongs to no sign-in of ours.
std::string strangerPage();

}  // namespace companion
