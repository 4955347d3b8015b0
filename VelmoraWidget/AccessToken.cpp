#include "VelmoraWidget/AccessToken.hpp"

#include "VelmoraWidget/OAuthConfig.hpp"
#include "VelmoraWidget/SharedKeychain.hpp"
#include "VelmoraWidget/UnreadableAnswer.hpp"
#include "platform/foundation/http.hpp"
#include "platform/foundation/json.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/url.hpp"

namespace velmora {

namespace {

TokenResponse decodeTokenResponse(std::string_view body) {
  const platform::JsonDecoder object(body);
  return {.access_token = object.optionalString("access_token"),
          .refresh_token = object.optionalString("refresh_token"),
          .expires_in = object.optionalInteger("expires_in"),
          .error = object.optionalString("error"),
          .error_description = object.optionalString("error_description")};
}

}  // namespace

OAuthError::OAuthError(Case errorCase, std::string description)
    : kind(errorCase), description_(std::move(description)) {}

OAuthError OAuthError::token(const std::string& message, const TokenRefusal& refusal) {
  OAuthError error{Case::token, platform::localizedFormat("Authentication error: %s", {message})};
  error.refusal = refusal;
  return error;
}

OAuthError OAuthError::missingConfig() {
  return {Case::missingConfig,
          platform::localizedString("OAuth configuration not found (client_secret.json missing).")};
}

OAuthError OAuthError::noRefreshToken() {
  return {Case::noRefreshToken, platform::localizedString("Not connected to Google.")};
}

std::string percentEncodeValue(std::string_view value) {
  return platform::percentEncoded(value, unreservedCharacters);
}

std::string formEncodedBody(const std::map<std::string, std::string>& fields) {
  std::string body;
  for (const auto& [name, value] : fields)
    body += (body.empty() ? "" : "&") + name + "=" + percentEncodeValue(value);
  return body;
}

std::string accessTokenFrom(std::string_view body, int httpStatus) {
  const auto answer = decodeAnswer(body, httpStatus, decodeTokenResponse);
  if (answer.error)
    throw OAuthError::token(answer.error_description.value_or(*answer.error),
                            {*answer.error, httpStatus});
  if (!answer.access_token)
    throw OAuthError::token("response without access_token", {"", httpStatus});
  return *answer.access_token;
}

IssuedToken issueAccessToken(std::chrono::milliseconds timeout) {
  const auto config = loadOAuthConfig();
  if (!config) throw OAuthError::missingConfig();
  const auto refreshToken = refreshTokenItem().readString();
  if (!refreshToken) throw OAuthError::noRefreshToken();

  const auto response =
      platform::sendRequest({.url = config->tokenURI,
                             .headers = {{"Content-Type", "application/x-www-form-urlencoded"}},
                             .body = formEncodedBody({{"refresh_token", *refreshToken},
                                                      {"client_id", config->clientID},
                                                      {"client_secret", config->clientSecret},
                                                      {"grant_type", "refresh_token"}}),
                             .timeout = timeout});
  return {accessTokenFrom(response.body, response.status), *refreshToken};
}

std::string refreshAccessToken(std::chrono::milliseconds timeout) {
  return issueAccessToken(timeout).accessToken;
}

void requireStoredToken(const std::string& refreshToken) {
  if (refreshTokenItem().readString() != refreshToken) throw OAuthError::noRefreshToken();
}

}  // namespace velmora
