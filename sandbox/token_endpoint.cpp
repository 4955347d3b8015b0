#include "sandbox/token_endpoint.hpp"

#include <map>

#include "platform/foundation/url.hpp"

namespace sandbox {

namespace {

constexpr int lifetime = 3599;  // seconds

using Form = std::map<std::string, std::string>;

Form readForm(const std::string& body) {
  Form form;
  for (auto& item : platform::queryItems(body)) form[item.name] = item.value;
  return form;
}

bool isForm(const std::string& contentType) {
  return contentType.starts_with("application/x-www-form-urlencoded");
}

Answer notAForm() { return {400, tokenError("invalid_request", "The body must be form-encoded.")}; }

platform::Json tokens(const Grant& grant) {
  return {{"access_token", grant.accessToken},
          {"expires_in", lifetime},
          {"scope", grant.scope},
          {"token_type", "Bearer"}};
}

Answer exchange(Form& form, Grants& grants) {
  const auto grant = grants.redeem(form["code"], form["redirect_uri"], form["code_verifier"]);
  if (!grant) return {400, tokenError("invalid_grant", "Malformed auth code.")};
  auto document = tokens(*grant);
  if (grant->refreshToken) document["refresh_token"] = *grant->refreshToken;
  return {200, document};
}

}  // namespace

platform::Json tokenError(const std::string& error, const std::string& description) {
  return {{"error", error}, {"error_description", description}};
}

bool isCodeExchange(const std::string& body) {
  return readForm(body)["grant_type"] == "authorization_code";
}

Answer answerTokenRequest(const std::string& contentType, const std::string& body, Grants& grants,
                          const ClientCredentials& client) {
  if (!isForm(contentType)) return notAForm();
  auto form = readForm(body);
  if (form["client_id"] != client.id || form["client_secret"] != client.secret)
    return {401, tokenError("invalid_client", "The OAuth client was not found.")};
  if (form["grant_type"] == "authorization_code") return exchange(form, grants);
  if (form["grant_type"] != "refresh_token")
    return {400, tokenError("unsupported_grant_type", "Invalid grant_type.")};
  const auto grant = grants.refresh(form["refresh_token"]);
  if (!grant) return {400, tokenError("invalid_grant", "Token has been expired or revoked.")};
  return {200, tokens(*grant)};
}

Answer answerRevocation(const std::string& contentType, const std::string& body, Grants& grants) {
  if (!isForm(contentType)) return notAForm();
  if (grants.revoke(readForm(body)["token"])) return {200, platform::Json::object()};
  return {400, tokenError("invalid_token", "Token expired or revoked")};
}

}  // namespace sandbox
