#include "companion/token_exchange.hpp"

#include <algorithm>
#include <iterator>
#include <map>
#include <sstream>

#include "VelmoraWidget/AccessToken.hpp"
#include "VelmoraWidget/RequestTimeout.hpp"
#include "companion/sign_in_error.hpp"
#include "platform/foundation/http.hpp"
#include "platform/foundation/json.hpp"

namespace companion {

namespace {

constexpr std::chrono::seconds revocationTimeout{10};

platform::HttpResponse sendForm(const std::string& url,
                                const std::map<std::string, std::string>& fields,
                                std::chrono::milliseconds timeout) {
  return platform::sendRequest({.url = url,
                                .headers = {{"Content-Type", "application/x-www-form-urlencoded"}},
                                .body = velmora::formEncodedBody(fields),
                                .timeout = timeout});
}

/// Whether the granted scope covers AdSense; one that is not named is the one that was asked for
/// (RFC 6749, section 5.1).
bool coversAdSense(const std::optional<std::string>& scope) {
  if (!scope) return true;
  std::istringstream words(*scope);
  return std::find(std::istream_iterator<std::string>(words), {}, adSenseScope) !=
         std::istream_iterator<std::string>();
}

Grant grantFrom(const velmora::TokenResponse& answer) {
  using Case = SignInError::Case;
  if (answer.error) throw SignInError(Case::refused, *answer.error);
  const auto access = answer.access_token.value_or("");
  const auto refresh = answer.refresh_token.value_or("");
  const bool hasPermission = coversAdSense(answer.scope);
  if (hasPermission && !access.empty() && !refresh.empty()) return {access, refresh};
  // What cannot be used is not left behind at the provider.
  const auto& token = refresh.empty() ? access : refresh;
  if (!token.empty()) revokeToken(token);
  if (token.empty() || (access.empty() && hasPermission))
    throw SignInError(Case::unreachable, "access_token");
  throw SignInError(hasPermission ? Case::noRefreshToken : Case::noPermission);
}

}  // namespace

Grant exchangeCode(const velmora::OAuthConfig& config, const AuthorizationRequest& request,
                   const std::string& code, std::chrono::milliseconds timeout) {
  try {
    const auto response = sendForm(config.tokenURI,
                                   {{"grant_type", "authorization_code"},
                                    {"code", code},
                                    {"code_verifier", request.verifier},
                                    {"client_id", config.clientID},
                                    {"client_secret", config.clientSecret},
                                    {"redirect_uri", request.redirectURI}},
                                   std::min(timeout, velmora::requestTimeout()));
    const auto answer = velmora::decodeTokenResponse(response.body);
    if (response.status != 200 && !answer.error)
      throw SignInError(SignInError::Case::unreachable, "HTTP " + std::to_string(response.status));
    return grantFrom(answer);
  } catch (const platform::TransportError& error) {
    throw SignInError(SignInError::Case::unreachable, error.what());
  } catch (const platform::JsonDecodingError& error) {
    throw SignInError(SignInError::Case::unreachable, error.what());
  }
}

bool revokeToken(const std::string& token) {
  try {
    const auto timeout =
        std::min<std::chrono::milliseconds>(revocationTimeout, velmora::requestTimeout());
    const auto response = sendForm(revocationURL(), {{"token", token}}, timeout);
    if (response.status == 200) return true;
    return platform::JsonDecoder(response.body).optionalString("error") == "invalid_token";
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace companion
