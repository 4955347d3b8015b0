#pragma once

#include <optional>
#include <string>

#include "VelmoraWidget/AdSenseClient.hpp"

namespace velmora {

/// Ready display texts; absent when unknown.
struct PaymentsSummary {
  std::optional<std::string> balance;
  std::optional<std::string> lastPaymentAmount;
  std::optional<std::string> lastPaymentDateLabel;
};

/// Requests the payments of an account and summarises them. Throws as AdSenseClient does.
PaymentsSummary fetchPaymentsSummary(const AdSenseClient& client, const std::string& accountName,
                                     const std::string& currencyCode);

/// The unpaid balance, and the latest payment that has a date.
PaymentsSummary summarize(const PaymentsResponse& response, const std::string& currencyCode);

/// The number in an amount as the service writes it ("$1,234.57", "1 234,57 €"): signs, letters
/// and spaces are dropped; commas group when there is a point and are decimal marks otherwise.
/// Absent when what is left is no number.
std::optional<double> parseAmount(const std::string& text);

/// The day in the display locale's medium style; empty when the parts form no day.
std::string paymentDateLabel(const PaymentDate& date);

}  // namespace velmora
