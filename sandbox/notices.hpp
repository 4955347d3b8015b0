#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/json.hpp"
#include "sandbox/publisher.hpp"

namespace sandbox {

/// What the service has to tell a publisher.
struct Alert {
  std::string severity;  ///< INFO, WARNING or SEVERE
  std::string message;   ///< may hold HTML, as the service's own do
};

/// A site on which the service restricts ads, or will.
struct PolicyIssue {
  std::string action;  ///< WARNED, AD_SERVING_RESTRICTED, ...
  std::string site;
};

/// Reads "SEVERITY=TEXT"; absent when it is none.
std::optional<Alert> parseAlert(const std::string& text);
/// Reads "ACTION=SITE"; absent when it is none.
std::optional<PolicyIssue> parsePolicyIssue(const std::string& text);

/// The answer of alerts.list, `{}` without one.
platform::Json listAlerts(const Publisher& publisher, const std::vector<Alert>& alerts);

/// A page of policyIssues.list, `{}` without an issue: at most `pageSize` of them (0 means all)
/// from the one that `pageToken` names. Throws ApiError for a token that is none.
platform::Json listPolicyIssues(const Publisher& publisher, const std::vector<PolicyIssue>& issues,
                                std::size_t pageSize, const std::string& pageToken);

}  // namespace sandbox
