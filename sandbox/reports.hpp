#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/json.hpp"
#include "sandbox/publisher.hpp"

namespace sandbox {

/// The items of a query, decoded, in their order.
using Query = std::vector<std::pair<std::string, std::string>>;

/// The answer of reports:generate: headers, one row for each day (or month) with events, totals
/// and averages. Without dimensions one row stands for the whole range. Throws ApiError.
platform::Json generateReport(const Publisher& publisher, const Query& query);

}  // namespace sandbox
