#include "companion/news/service_notices.hpp"

#include "VelmoraWidget/AccessToken.hpp"
#include "VelmoraWidget/UnreadableAnswer.hpp"
#include "companion/news/plain_text.hpp"
#include "platform/foundation/json.hpp"

namespace companion::news {

namespace {

using platform::JsonDecoder;

constexpr int good = 200;  // or another below 300; which one makes no difference
constexpr int mostPages = 20;
constexpr std::size_t mostNotices = 500;  // beyond, nobody reads them any more
constexpr std::size_t longestName = 500;

struct PolicyPage {
  std::vector<PolicyIssue> issues;
  std::string next;  ///< empty on the last one
};

std::vector<JsonDecoder> list(const JsonDecoder& object, const char* key) {
  const auto found = object.optionalAt(key);
  return found ? found->array() : std::vector<JsonDecoder>{};
}

std::string text(const JsonDecoder& object, const char* key) {
  return object.optionalString(key).value_or("");
}

std::optional<platform::DateComponents> date(const JsonDecoder& object, const char* key) {
  const auto found = object.optionalAt(key);
  if (!found) return std::nullopt;
  return platform::DateComponents{found->optionalInteger("year"), found->optionalInteger("month"),
                                  found->optionalInteger("day")};
}

/// What names a notice is kept and told as it is, so it has to be of a sensible size.
std::string checked(std::string name) {
  if (name.size() > longestName) throw platform::JsonDecodingError("a name that is too long");
  return name;
}

std::vector<ServiceAlert> decodeAlerts(std::string_view body) {
  std::vector<ServiceAlert> alerts;
  for (const auto& alert : list(JsonDecoder(body), "alerts")) {
    if (alerts.size() == mostNotices) break;
    alerts.push_back({checked(alert.at("name").string()), checked(text(alert, "severity")),
                      plainText(text(alert, "message"))});
  }
  return alerts;
}

/// The narrowest place that is named.
std::string placeOf(const JsonDecoder& issue) {
  for (const auto* key : {"uri", "siteSection", "site"}) {
    if (auto place = plainText(text(issue, key)); !place.empty()) return place;
  }
  return "";
}

PolicyPage decodePolicyPage(std::string_view body) {
  const JsonDecoder object(body);
  PolicyPage page{{}, text(object, "nextPageToken")};
  for (const auto& issue : list(object, "policyIssues"))
    page.issues.push_back({checked(issue.at("name").string()), checked(text(issue, "action")),
                           placeOf(issue), date(issue, "firstDetectedDate"),
                           date(issue, "warningEscalationDate")});
  return page;
}

}  // namespace

std::vector<ServiceAlert> fetchAlerts(const Ask& ask, const std::string& language) {
  const auto body = ask("alerts?languageCode=" + velmora::percentEncodeValue(language));
  return velmora::decodeAnswer(body, good, decodeAlerts);
}

std::vector<PolicyIssue> fetchPolicyIssues(const Ask& ask) {
  std::vector<PolicyIssue> issues;
  std::string token;
  for (int number = 0; number < mostPages && issues.size() < mostNotices; ++number) {
    const auto query = token.empty() ? "" : "?pageToken=" + velmora::percentEncodeValue(token);
    auto page = velmora::decodeAnswer(ask("policyIssues" + query), good, decodePolicyPage);
    issues.insert(issues.end(), page.issues.begin(), page.issues.end());
    if (page.next.empty() || page.next == token) break;
    token = std::move(page.next);
  }
  if (issues.size() > mostNotices) issues.resize(mostNotices);
  return issues;
}

}  // namespace companion::news
