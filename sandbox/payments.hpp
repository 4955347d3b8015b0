#pragma once

#include "platform/foundation/json.hpp"
#include "sandbox/publisher.hpp"

namespace sandbox {

/// The answer of payments.list: the unpaid balances and what was paid on the 21st of each month
/// for the month before, newest first.
platform::Json listPayments(const Publisher& publisher);

/// An amount as the service writes it: "€1,234.57", "¥1,235 JPY", "CHF 87.65".
std::string amountText(double amount, const std::string& currency, int fractionDigits);

}  // namespace sandbox
