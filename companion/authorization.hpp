#pragma once

#include <optional>
#include <string>
#include <variant>

#include "VelmoraWidget/OAuthConfig.hpp"

namespace companion {

inline constexpr const char* adSenseScope = "https://www.googleapis.com/auth/adsense.readonly";

/// What one sign-in made up, and where its answer is expected.
struct AuthorizationRequest {
  std::string redirectURI;
  std::string state;     ///< 43 characters (RFC 6749, section 10.12)
  std::string verifier;  ///< 43 characters (RFC 7636, section 4.1)
};

/// A request with fresh state and verifier, 32 bytes each from the system's random source.
AuthorizationRequest makeAuthorizationRequest(const std::string& redirectURI);

/// The address that the user's browser opens (RFC 6749, section 4.1.1; RFC 7636, section 4.3). A
/// query that `auth_uri` brings along is kept.
std::string authorizationAddress(const velmora::OAuthConfig& config,
                                 const AuthorizationRequest& request);

/// What a redirect brought (RFC 6749, section 4.1.2).
struct AuthorizationCode {
  std::string code;
};
struct AuthorizationFailure {
  std::string error;  ///< "access_denied" and others; as it came, never to be shown unescaped
};
using AuthorizationAnswer = std::variant<AuthorizationCode, AuthorizationFailure>;

/// Reads the query of a redirect. Absent when it does not belong to the request: another state, a
/// parameter given twice, neither a code nor an error.
std::optional<AuthorizationAnswer> readRedirect(const std::string& query,
                                                const AuthorizationRequest& request);

}  // namespace companion
