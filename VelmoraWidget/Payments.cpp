#include "VelmoraWidget/Payments.hpp"

#include <algorithm>

#include "VelmoraWidget/CurrencyFormat.hpp"
#include "VelmoraWidget/Reports.hpp"
#include "platform/foundation/formatting.hpp"
#include "platform/foundation/text.hpp"

namespace velmora {

namespace {

// Three 64-bit parts add up beyond 64 bits.
__extension__ using DateNumber = __int128;

/// Orders payment dates; absent parts count as 0.
DateNumber dateNumber(const PaymentDate& date) {
  return DateNumber{date.year.value_or(0)} * 10'000 + DateNumber{date.month.value_or(0)} * 100 +
         date.day.value_or(0);
}

/// The amount in the widget's own style; the service's text when it holds no number.
std::string reformatted(const std::string& amount, const std::string& currencyCode) {
  const auto number = parseAmount(amount);
  return number ? formatCurrency(*number, currencyCode) : amount;
}

std::optional<std::string> balanceSource(const std::vector<Payment>& payments) {
  const auto unpaid = std::find_if(payments.begin(), payments.end(), [](const Payment& payment) {
    return payment.name.ends_with("/unpaid");
  });
  return unpaid == payments.end() ? std::nullopt : unpaid->amount;
}

const Payment* lastPayment(const std::vector<Payment>& payments) {
  const Payment* last = nullptr;
  for (const auto& payment : payments) {
    if (payment.name.ends_with("unpaid") || !payment.date) continue;
    if (last == nullptr || dateNumber(*payment.date) > dateNumber(*last->date)) last = &payment;
  }
  return last;
}

}  // namespace

std::optional<double> parseAmount(const std::string& text) {
  std::string kept;
  for (const auto& character : platform::graphemeClusters(text)) {
    const bool mark = character == "." || character == "," || character == "-";
    if (mark || platform::isNumeric(character)) kept += character;
  }
  if (kept.find('.') != std::string::npos) {
    std::erase(kept, ',');
  } else {
    std::replace(kept.begin(), kept.end(), ',', '.');
  }
  return platform::numberFromText(kept);
}

std::string paymentDateLabel(const PaymentDate& date) {
  const auto day = reportCalendar.date({date.year, date.month, date.day});
  return day ? platform::mediumDateText(*day, displayLocale()) : "";
}

PaymentsSummary summarize(const PaymentsResponse& response, const std::string& currencyCode) {
  PaymentsSummary summary;
  if (!response.payments) return summary;
  if (const auto balance = balanceSource(*response.payments))
    summary.balance = reformatted(*balance, currencyCode);
  if (const auto* last = lastPayment(*response.payments)) {
    if (last->amount) summary.lastPaymentAmount = reformatted(*last->amount, currencyCode);
    summary.lastPaymentDateLabel = paymentDateLabel(*last->date);
  }
  return summary;
}

PaymentsSummary fetchPaymentsSummary(const AdSenseClient& client, const std::string& accountName,
                                     const std::string& currencyCode) {
  return summarize(client.fetchPayments(accountName), currencyCode);
}

}  // namespace velmora
