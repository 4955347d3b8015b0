#include <algorithm>

#include "VelmoraWidget/CurrencyFormat.hpp"
#include "VelmoraWidget/Reports.hpp"
#include "companion/news/kinds/kinds.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::news {

using platform::localizedFormat;
using platform::localizedString;

namespace {

constexpr const char* kind = "policy";

std::string idOf(const PolicyIssue& issue) { return "policy-" + issue.name + "-" + issue.action; }

/// What is restricted.
std::string titleOf(const PolicyIssue& issue) {
  if (issue.action == "WARNED") return localizedString("AdSense is going to restrict ads");
  if (issue.action == "AD_SERVING_RESTRICTED") return localizedString("AdSense shows fewer ads");
  if (issue.action == "AD_SERVING_DISABLED")
    return localizedString("AdSense shows no ads any more");
  if (issue.action == "AD_SERVED_WITH_CLICK_CONFIRMATION")
    return localizedString("AdSense wants clicks on ads to be confirmed");
  if (issue.action == "AD_PERSONALIZATION_RESTRICTED")
    return localizedString("AdSense shows ads that are not personalized");
  return localizedString("AdSense reports a policy issue");
}

/// Where, and from when.
std::string bodyOf(const PolicyIssue& issue) {
  const auto text = [](const platform::DateComponents& parts) -> std::string {
    const auto day = velmora::reportCalendar.date(parts);
    return day ? platform::mediumDateText(*day, velmora::displayLocale()) : "";
  };
  if (issue.escalates) {
    const auto date = text(*issue.escalates);
    if (!date.empty()) return localizedFormat("%s, from %s on", {issue.place, date});
  }
  const auto date = issue.firstDetected ? text(*issue.firstDetected) : "";
  return date.empty() ? issue.place : localizedFormat("%s, since %s", {issue.place, date});
}

std::vector<Entry> find(const Facts& facts) {
  std::vector<Entry> entries;
  for (const auto& issue : facts.policyIssues.value_or(std::vector<PolicyIssue>{})) {
    const bool isServing =
        issue.action == "AD_SERVING_RESTRICTED" || issue.action == "AD_SERVING_DISABLED";
    entries.push_back({idOf(issue), titleOf(issue), bodyOf(issue),
                       isServing ? Urgency::critical : Urgency::normal});
  }
  return entries;
}

Standing standing(const Told& told, const Facts& facts) {
  if (!facts.policyIssues) return Standing::holds;
  const bool isListed =
      std::any_of(facts.policyIssues->begin(), facts.policyIssues->end(),
                  [&told](const PolicyIssue& issue) { return idOf(issue) == told.id; });
  return isListed ? Standing::holds : Standing::over;
}

}  // namespace

Kind policyKind() {
  return {kind, localizedString("Policy issues"),
          localizedString("When AdSense restricts ads on a site or a page, or is going to"), find,
          standing};
}

}  // namespace companion::news
