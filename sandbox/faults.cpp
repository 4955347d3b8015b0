#include "sandbox/faults.hpp"

namespace sandbox {

const std::map<std::string, Step>& stepNames() {
  static const std::map<std::string, Step> names{
      {"token", Step::token},       {"accounts", Step::accounts}, {"report", Step::report},
      {"lastyear", Step::lastYear}, {"payments", Step::payments}, {"auth", Step::authorization},
      {"exchange", Step::exchange}, {"revoke", Step::revoke},     {"alerts", Step::alerts},
      {"policy", Step::policy}};
  return names;
}

namespace {

std::optional<int> statusFrom(const std::string& text) {
  const bool threeDigits =
      text.size() == 3 && text.find_first_not_of("0123456789") == std::string::npos;
  if (!threeDigits) return std::nullopt;
  const int status = std::stoi(text);
  return status >= 300 && status <= 599 ? std::optional(status) : std::nullopt;
}

/// The status that the provider sends with an OAuth error.
int statusOf(const std::string& code) {
  if (code == "internal_failure") return 500;
  if (code == "temporarily_unavailable") return 503;
  return code.ends_with("_client") ? 401 : 400;
}

std::optional<Fault> parseOAuthError(const std::string& text) {
  const bool isCode = text.find('_') != std::string::npos &&
                      text.find_first_not_of("abcdefghijklmnopqrstuvwxyz_") == std::string::npos;
  if (!isCode) return std::nullopt;
  return Fault{Fault::Kind::oauthError, statusOf(text), text};
}

}  // namespace

std::optional<Fault> parseFaultKind(const std::string& text) {
  using Kind = Fault::Kind;
  static const std::map<std::string, Kind> kinds{{"drop", Kind::drop},
                                                 {"truncate", Kind::truncate},
                                                 {"garbage", Kind::garbage},
                                                 {"html", Kind::html},
                                                 {"empty", Kind::empty},
                                                 {"slow", Kind::slow},
                                                 {"huge", Kind::huge},
                                                 {"redirect-loop", Kind::redirectLoop},
                                                 {"service-disabled", Kind::serviceDisabled}};
  if (const auto kind = kinds.find(text); kind != kinds.end()) return Fault{kind->second, 0, ""};
  const std::string page = "html-";
  const bool isPage = text.starts_with(page);
  const auto status = statusFrom(isPage ? text.substr(page.size()) : text);
  if (!status) return std::nullopt;
  return Fault{isPage ? Kind::html : Kind::status, *status, ""};
}

std::optional<std::pair<Step, Fault>> parseFault(const std::string& text) {
  const auto separator = text.find('=');
  if (separator == std::string::npos) return std::nullopt;
  const auto step = stepNames().find(text.substr(0, separator));
  if (step == stepNames().end()) return std::nullopt;
  const auto kind = text.substr(separator + 1);
  auto fault = parseFaultKind(kind);
  const bool isTokenEndpoint = step->second == Step::token || step->second == Step::exchange;
  if (!fault && isTokenEndpoint) fault = parseOAuthError(kind);
  if (!fault) return std::nullopt;
  return std::pair(step->second, *fault);
}

}  // namespace sandbox
