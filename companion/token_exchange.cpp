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
                                .timeout = timeout,
                                .followsRedirects = false});
}

/// Whether the granted scope covers AdSense. One that is not named is the one that was asked for
/// (RFC 6749, section 5.1).
bool coversAdSense(const std::string& scope) {
  std::istringstream words(scope);
  return std::find(std::istream_iterator<std::string>(words), {}, adSenseScope) !=
         std::istream_iterator<std::string>();
}

/// A member that should be a text; empty when it is missing or is none.
std::string textIn(const platform::JsonDecoder& object, const char* key) {
  try {
    return object.optionalString(key).value_or("");
  } catch (const platform::JsonDecodingError&) {
    return "";
  }
}

std::string nameOf(int status) { return "HTTP " + std::to_string(status); }

/// Throws SignInError unless the answer is a document that grants something. The status says more
/// than a body that is no document, or than one that comes with the endpoint's own trouble.
platform::JsonDecoder documentOf(const platform::HttpResponse& response) {
  using Case = SignInError::Case;
  constexpr int tooManyRequests = 429;
  if (response.status >= 500 || response.status == tooManyRequests)
    throw SignInError(Case::unavailable, nameOf(response.status));
  try {
    platform::JsonDecoder document(response.body);
    if (document.contains("error")) {
      const auto error = textIn(document, "error");
      throw SignInError(Case::refused, error.empty() ? nameOf(response.status) : error);
    }
    if (response.status == 200) return document;
  } catch (const platform::JsonDecodingError& error) {
    if (response.status == 200) throw SignInError(Case::unreachable, error.what());
  }
  throw SignInError(Case::unreachable, nameOf(response.status));
}

Grant grantFrom(const platform::HttpResponse& response) {
  using Case = SignInError::Case;
  const auto answer = documentOf(response);
  const auto access = textIn(answer, "access_token");
  const auto refresh = textIn(answer, "refresh_token");
  const bool hasPermission = !answer.contains("scope") || coversAdSense(textIn(answer, "scope"));
  if (hasPermission && !access.empty() && !refresh.empty()) return {access, refresh};
  // What cannot be used is not left behind at the provider.
  const auto& token = refresh.empty() ? access : refresh;
  if (!token.empty()) revokeToken(token);
  if (access.empty()) throw SignInError(Case::unreachable, "access_token");
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
    return grantFrom(response);
  } catch (const platform::TransportError& error) {
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
