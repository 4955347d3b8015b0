#include "sandbox/notices.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <utility>

#include "sandbox/api_error.hpp"

namespace sandbox {

namespace chr = std::chrono;
using platform::Json;

namespace {

constexpr chr::days untilRestricted{7};
constexpr chr::days sinceDetected{3};

/// "WORD=REST", of which the word is one of those.
std::optional<std::pair<std::string, std::string>> split(const std::string& text,
                                                         std::initializer_list<const char*> words) {
  const auto separator = text.find('=');
  if (separator == std::string::npos || separator + 1 == text.size()) return std::nullopt;
  auto word = text.substr(0, separator);
  if (std::find(words.begin(), words.end(), word) == words.end()) return std::nullopt;
  return std::pair(std::move(word), text.substr(separator + 1));
}

Json dateJson(chr::sys_days day) {
  const chr::year_month_day date{day};
  return {{"year", static_cast<int>(date.year())},
          {"month", static_cast<unsigned>(date.month())},
          {"day", static_cast<unsigned>(date.day())}};
}

Json jsonForm(const Publisher& publisher, const PolicyIssue& issue, std::size_t number) {
  Json json{{"name", publisher.accountName() + "/policyIssues/" + std::to_string(number)},
            {"site", issue.site},
            {"entityType", "SITE"},
            {"policyTopics", {{{"topic", "MISREPRESENTATIVE_CONTENT"}, {"type", "POLICY"}}}},
            {"action", issue.action},
            {"firstDetectedDate", dateJson(publisher.today() - sinceDetected)},
            {"lastDetectedDate", dateJson(publisher.today())},
            {"adRequestCount", "1250"}};
  if (issue.action == "WARNED")
    json["warningEscalationDate"] = dateJson(publisher.today() + untilRestricted);
  return json;
}

std::size_t positionOf(const std::string& pageToken, std::size_t count) {
  std::size_t position = 0;
  const auto* end = pageToken.data() + pageToken.size();
  const auto [stop, error] = std::from_chars(pageToken.data(), end, position);
  if (pageToken.empty()) return 0;
  if (error != std::errc() || stop != end || position >= count)
    throw ApiError(400, "Request contains an invalid page token.");
  return position;
}

}  // namespace

std::optional<Alert> parseAlert(const std::string& text) {
  auto parts = split(text, {"INFO", "WARNING", "SEVERE"});
  if (!parts) return std::nullopt;
  return Alert{std::move(parts->first), std::move(parts->second)};
}

std::optional<PolicyIssue> parsePolicyIssue(const std::string& text) {
  auto parts = split(text, {"WARNED", "AD_SERVING_RESTRICTED", "AD_SERVING_DISABLED",
                            "AD_SERVED_WITH_CLICK_CONFIRMATION", "AD_PERSONALIZATION_RESTRICTED"});
  if (!parts) return std::nullopt;
  return PolicyIssue{std::move(parts->first), std::move(parts->second)};
}

Json listAlerts(const Publisher& publisher, const std::vector<Alert>& alerts) {
  auto answer = Json::object();
  std::size_t number = 0;
  for (const auto& alert : alerts)
    answer["alerts"].push_back(
        {{"name", publisher.accountName() + "/alerts/" + std::to_string(++number)},
         {"severity", alert.severity},
         {"message", alert.message},
         {"type", "sandbox-notice"}});
  return answer;
}

Json listPolicyIssues(const Publisher& publisher, const std::vector<PolicyIssue>& issues,
                      std::size_t pageSize, const std::string& pageToken) {
  auto answer = Json::object();
  const auto first = positionOf(pageToken, issues.size());
  const auto rest = issues.size() - first;
  const auto end = first + (pageSize == 0 ? rest : std::min(pageSize, rest));
  for (auto i = first; i < end; ++i)
    answer["policyIssues"].push_back(jsonForm(publisher, issues[i], i + 1));
  if (end < issues.size()) answer["nextPageToken"] = std::to_string(end);
  return answer;
}

}  // namespace sandbox
