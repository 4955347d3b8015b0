#pragma once

#include "companion/failure.hpp"
#include "companion/sign_in_error.hpp"

namespace companion {

/// The user's page about what may use the Google Account.
inline constexpr const char* accountAccessPage = "https://myaccount.google.com/connections";

/// A failed sign-in in a person's words, without codes and commands: what it means, what helps,
/// and apart from them the technical text.
Failure describeSignInFailure(const SignInError& error);

}  // namespace companion
