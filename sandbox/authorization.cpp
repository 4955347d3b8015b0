#include "sandbox/authorization.hpp"

#include <algorithm>

#include "platform/foundation/url.hpp"

namespace sandbox {

namespace {

constexpr std::size_t challengeLength = 43;
constexpr std::string_view unreserved =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";

std::string only(const QueryParameters& parameters, const std::string& name) {
  return parameters.count(name) == 1 ? parameters.find(name)->second : "";
}

bool isRegistered(const std::string& redirectURI) {
  if (redirectURI.find_first_of("?#@") != std::string::npos) return false;
  for (const std::string registered : {"http://127.0.0.1", "http://localhost", "http://[::1]"}) {
    if (!redirectURI.starts_with(registered)) continue;
    auto rest = redirectURI.substr(registered.size());
    if (rest.starts_with(':')) rest.erase(0, std::min(rest.find('/'), rest.size()));
    const auto origin = platform::originOf(redirectURI);
    return origin && platform::isLoopback(*origin) && (rest.empty() || rest == "/");
  }
  return false;
}

std::string problemOf(const QueryParameters& parameters) {
  if (only(parameters, "response_type") != "code") return "unsupported_response_type";
  if (only(parameters, "scope").empty()) return "invalid_scope";
  const bool pkce = only(parameters, "code_challenge_method") == "S256" &&
                    only(parameters, "code_challenge").size() == challengeLength;
  return pkce ? "" : "invalid_request";
}

std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '&') {
      result += "&amp;";
    } else if (c == '<') {
      result += "&lt;";
    } else if (c == '"') {
      result += "&quot;";
    } else {
      result += c;
    }
  }
  return result;
}

std::string page(const std::string& title, const std::string& content) {
  return "<!DOCTYPE html><html lang=\"en\"><meta charset=\"utf-8\"><meta name=\"viewport\" "
         "content=\"width=device-width, initial-scale=1\"><title>" +
         title +
         "</title><style>*{box-sizing:border-box}body{margin:0;min-height:100vh;display:flex;"
         "align-items:center;justify-content:center;padding:16px;background:#f0f4f9;color:#1f1f1f;"
         "font:16px/1.5 system-ui,sans-serif}main{background:#fff;border-radius:24px;padding:36px;"
         "max-width:30rem;width:100%}h1{font-size:1.6rem;font-weight:400;line-height:1.3;"
         "margin:0 0 16px}ul{padding-inline-start:20px}form{display:flex;gap:12px;"
         "justify-content:flex-end;flex-wrap:wrap;margin-top:32px}button{font:inherit;"
         "font-weight:500;padding:9px 24px;border-radius:20px;border:1px solid #747775;"
         "background:#fff;color:#0b57d0;cursor:pointer}button.main{background:#0b57d0;"
         "border-color:#0b57d0;color:#fff}small{color:#5f6368}</style><main>" +
         content + "</main></html>\n";
}

}  // namespace

std::optional<ConsentMode> consentModeFrom(const std::string& text) {
  if (text == "ask") return ConsentMode::ask;
  if (text == "allow") return ConsentMode::allow;
  if (text == "deny") return ConsentMode::deny;
  return std::nullopt;
}

AuthorizationRequest readAuthorizationRequest(const QueryParameters& parameters,
                                              const std::string& clientID) {
  AuthorizationRequest request;
  request.consent = {only(parameters, "redirect_uri"), only(parameters, "code_challenge"),
                     only(parameters, "scope"), only(parameters, "access_type") == "offline"};
  request.state = only(parameters, "state");
  if (only(parameters, "client_id") != clientID) {
    request.pageError = "invalid_client";
  } else if (!isRegistered(request.consent.redirectURI)) {
    request.pageError = "redirect_uri_mismatch";
  } else {
    request.redirectError = problemOf(parameters);
  }
  return request;
}

std::string redirectAddress(const AuthorizationRequest& request,
                            const std::optional<std::string>& code, const std::string& error) {
  const auto item = [](const std::string& name, const std::string& value) {
    return name + "=" + platform::percentEncoded(value, unreserved);
  };
  const auto& uri = request.consent.redirectURI;
  const bool hasPath = uri.find('/', uri.find("://") + 3) != std::string::npos;
  std::string address = uri + (hasPath ? "?" : "/?") + item("state", request.state);
  if (!code) return address + "&" + item("error", error);
  return address + "&" + item("code", *code) + "&" + item("scope", request.consent.scope) +
         "&authuser=0&prompt=consent";
}

std::string consentPage(const std::string& query) {
  return page("Sign in",
              "<h1>Velmora wants to access your sandbox account</h1><p>This will allow Velmora "
              "to:</p><ul><li>View your AdSense data</li></ul><p><small>There is no real account "
              "behind this page. It is made up for demos and tests.</small></p><form "
              "method=\"post\" action=\"/consent?" +
                  escaped(query) +
                  "\"><button name=\"answer\" value=\"deny\">Deny</button><button class=\"main\" "
                  "name=\"answer\" value=\"allow\">Allow</button></form>");
}

std::string errorPage(const std::string& error) {
  return page("Access blocked", "<h1>Access blocked: this request is invalid</h1><p>Error 400: " +
                                    escaped(error) + "</p>");
}

}  // namespace sandbox
