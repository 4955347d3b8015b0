#include "companion/authorization.hpp"

#include <vector>

#include "VelmoraWidget/AccessToken.hpp"
#include "platform/foundation/digest.hpp"
#include "platform/foundation/url.hpp"

namespace companion {

namespace {

/// The value of a parameter; absent without one, or when it was given more than once, which
/// RFC 6749, section 3.1, does not allow.
std::optional<std::string> parameter(const std::vector<platform::QueryItem>& items,
                                     const std::string& name) {
  std::optional<std::string> value;
  for (const auto& item : items) {
    if (item.name != name) continue;
    if (value) return std::nullopt;
    value = item.value;
  }
  return value;
}

}  // namespace

AuthorizationRequest makeAuthorizationRequest(const std::string& redirectURI) {
  return {redirectURI, platform::randomToken(), platform::randomToken()};
}

std::string authorizationAddress(const velmora::OAuthConfig& config,
                                 const AuthorizationRequest& request) {
  const std::pair<const char*, std::string> parameters[] = {
      {"client_id", config.clientID},
      {"redirect_uri", request.redirectURI},
      {"response_type", "code"},
      {"scope", adSenseScope},
      {"state", request.state},
      {"code_challenge", platform::sha256Base64Url(request.verifier)},
      {"code_challenge_method", "S256"},
      {"access_type", "offline"},
      {"prompt", "consent"}};
  std::string address = config.authURI.substr(0, config.authURI.find('#'));
  char separator = address.find('?') == std::string::npos ? '?' : '&';
  for (const auto& [name, value] : parameters) {
    if (!address.ends_with('?') && !address.ends_with('&')) address += separator;
    address += std::string(name) + "=" + velmora::percentEncodeValue(value);
    separator = '&';
  }
  return address;
}

std::optional<AuthorizationAnswer> readRedirect(const std::string& query,
                                                const AuthorizationRequest& request) {
  const auto items = platform::queryItems(query);
  if (parameter(items, "state") != request.state) return std::nullopt;
  const auto code = parameter(items, "code");
  const auto error = parameter(items, "error");
  if (error && !error->empty()) return AuthorizationFailure{*error};
  if (code && !code->empty()) return AuthorizationCode{*code};
  return std::nullopt;
}

}  // namespace companion
