#include "sandbox/token_endpoint.hpp"

#include <glib.h>

#include <algorithm>
#include <map>

#include "platform/foundation/raii.hpp"
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

/// The client's credentials in a header, as some libraries send them (RFC 6749, section 2.3.1).
std::optional<ClientCredentials> basicCredentials(const std::string& authorization) {
  constexpr std::string_view scheme = "Basic ";
  if (!authorization.starts_with(scheme)) return std::nullopt;
  gsize size = 0;
  const platform::Owned<guchar, g_free> bytes(
      g_base64_decode(authorization.c_str() + scheme.size(), &size));
  const std::string pair(reinterpret_cast<const char*>(bytes.get()), size);
  const auto colon = std::min(pair.find(':'), pair.size());
  const auto decoded = [](const std::string& text) {
    const auto items = platform::queryItems("x=" + text);
    return items.front().value;
  };
  return ClientCredentials{decoded(pair.substr(0, colon)),
                           colon < pair.size() ? decoded(pair.substr(colon + 1)) : ""};
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

Answer answerTokenRequest(const std::string& contentType, const std::string& authorization,
                          const std::string& body, Grants& grants,
                          const ClientCredentials& client) {
  if (!isForm(contentType)) return notAForm();
  auto form = readForm(body);
  const auto sent = basicCredentials(authorization)
                        .value_or(ClientCredentials{form["client_id"], form["client_secret"]});
  if (sent.id != client.id || sent.secret != client.secret)
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
