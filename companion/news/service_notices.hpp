#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/calendar.hpp"

namespace companion::news {

/// An alert of the service. What it leaves out is empty.
struct ServiceAlert {
  std::string name;      ///< the resource's
  std::string severity;  ///< INFO, WARNING, SEVERE or one that came later
  std::string message;   ///< as plain text, in the language that was asked for

  bool operator==(const ServiceAlert&) const = default;
};

/// A policy issue of a site, a section of it or a page.
struct PolicyIssue {
  std::string name;    ///< the resource's
  std::string action;  ///< WARNED, AD_SERVING_RESTRICTED, ...
  std::string place;   ///< the site, section or page
  std::optional<platform::DateComponents> firstDetected;
  std::optional<platform::DateComponents> escalates;  ///< a warning's end
};

/// Asks the service for a path behind the account's name and returns the answer's body.
using Ask = std::function<std::string(const std::string& path)>;

/// Lists the alerts. Throws what `ask` throws, and velmora::UnreadableAnswer.
std::vector<ServiceAlert> fetchAlerts(const Ask& ask, const std::string& language);

/// Lists all policy issues, page by page. Throws likewise.
std::vector<PolicyIssue> fetchPolicyIssues(const Ask& ask);

}  // namespace companion::news
