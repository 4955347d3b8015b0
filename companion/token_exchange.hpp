#pragma once

#include <chrono>
#include <string>

#include "VelmoraWidget/OAuthConfig.hpp"
#include "companion/authorization.hpp"

namespace companion {

/// What the user granted.
struct Grant {
  std::string accessToken;
  std::string refreshToken;
};

/// Exchanges a code for tokens (RFC 6749, section 4.1.3), once: a code is never sent again. An
/// answer that lacks the refresh token or the AdSense permission is withdrawn. Waits for at most
/// `timeout`. Throws SignInError.
Grant exchangeCode(const velmora::OAuthConfig& config, const AuthorizationRequest& request,
                   const std::string& code, std::chrono::milliseconds timeout);

/// Withdraws a token at the provider (RFC 7009), and with it the whole grant. Returns whether it
/// is gone now; a token that was unknown there counts as gone.
bool revokeToken(const std::string& token);

/// The provider's revocation endpoint, a constant of the build.
std::string revocationURL();

}  // namespace companion
