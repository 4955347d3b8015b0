#pragma once

#include <cstdint>
#include <exception>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// The token endpoint's answer (RFC 6749, sections 5.1 and 5.2).
struct TokenResponse {
  std::optional<std::string> access_token;
  std::optional<std::string> refresh_token;
  std::optional<std::int64_t> expires_in;  ///< seconds
  std::optional<std::string> error;
  std::optional<std::string> error_description;
};

/// No access token could be had; `what()` is the description in the user's language.
class OAuthError : public std::exception {
 public:
  enum class Case { token, missingConfig, noRefreshToken };

  /// The token endpoint refused, with this message.
  static OAuthError token(const std::string& message);
  /// There is no usable client file.
  static OAuthError missingConfig();
  /// Nobody is signed in.
  static OAuthError noRefreshToken();

  [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

  Case kind;

 private:
  OAuthError(Case errorCase, std::string description);

  std::string description_;
};

/// Exchanges the stored refresh token for a new access token (RFC 6749, section 6). Nothing is
/// kept. Throws OAuthError, KeychainError, platform::TransportError or
/// platform::JsonDecodingError.
std::string refreshAccessToken();

/// Reads the token endpoint's answer, whatever its status was, and returns the access token.
/// Throws OAuthError or platform::JsonDecodingError.
std::string accessTokenFrom(std::string_view body);

/// A body of type application/x-www-form-urlencoded.
std::string formEncodedBody(const std::map<std::string, std::string>& fields);

/// Percent-encodes all but `unreservedCharacters` (RFC 3986, section 2.3).
std::string percentEncodeValue(std::string_view value);

inline constexpr std::string_view unreservedCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";

}  // namespace velmora
