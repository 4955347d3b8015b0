#pragma once

#include <chrono>
#include <cstdint>
#include <exception>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "VelmoraWidget/RequestTimeout.hpp"

namespace velmora {

/// The token endpoint's answer (RFC 6749, sections 5.1 and 5.2).
struct TokenResponse {
  std::optional<std::string> access_token;
  std::optional<std::string> refresh_token;
  std::optional<std::int64_t> expires_in;  ///< seconds
  std::optional<std::string> error;
  std::optional<std::string> error_description;
};

/// What a program can tell from a refusal of the token endpoint.
struct TokenRefusal {
  std::string code;  ///< "invalid_grant" and others (RFC 6749, section 5.2); may be empty
  int httpStatus = 0;
};

/// No access token could be had; `what()` is the description in the user's language.
class OAuthError : public std::exception {
 public:
  enum class Case { token, missingConfig, noRefreshToken };

  /// The token endpoint refused, with this message.
  static OAuthError token(const std::string& message, const TokenRefusal& refusal = {});
  /// There is no usable client file.
  static OAuthError missingConfig();
  /// Nobody is signed in.
  static OAuthError noRefreshToken();

  [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

  Case kind;
  TokenRefusal refusal;  ///< of the case `token`

 private:
  OAuthError(Case errorCase, std::string description);

  std::string description_;
};

/// An access token, and the stored refresh token that it was had for.
struct IssuedToken {
  std::string accessToken;
  std::string refreshToken;
};

/// Exchanges the stored refresh token for a new access token (RFC 6749, section 6). Nothing is
/// kept. Throws OAuthError, KeychainError, platform::TransportError or UnreadableAnswer.
IssuedToken issueAccessToken(std::chrono::milliseconds timeout = requestTimeout());

/// The same; returns the access token alone.
std::string refreshAccessToken(std::chrono::milliseconds timeout = requestTimeout());

/// Throws, as if nobody were signed in, unless this very refresh token is still the stored one.
void requireStoredToken(const std::string& refreshToken);

/// Reads the token endpoint's answer, whatever its status was, and returns the access token.
/// Throws OAuthError or UnreadableAnswer.
std::string accessTokenFrom(std::string_view body, int httpStatus = 200);

/// A body of type application/x-www-form-urlencoded.
std::string formEncodedBody(const std::map<std::string, std::string>& fields);

/// Percent-encodes all but `unreservedCharacters` (RFC 3986, section 2.3).
std::string percentEncodeValue(std::string_view value);

inline constexpr std::string_view unreservedCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";

}  // namespace velmora
