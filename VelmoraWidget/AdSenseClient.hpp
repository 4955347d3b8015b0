#pragma once

#include <chrono>
#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "VelmoraWidget/RequestTimeout.hpp"
#include "platform/foundation/url.hpp"

namespace velmora {

// The answers of the AdSense Management API, version 2, as far as the widget reads them. A list or
// value that the service leaves out or sends as null is absent.

struct Account {
  std::string name;  ///< "accounts/pub-..."
  std::optional<std::string> displayName;
};

struct AccountsResponse {
  std::optional<std::vector<Account>> accounts;
};

/// Describes one column of a report.
struct Header {
  std::optional<std::string> name;  ///< of the dimension or metric
  std::optional<std::string> type;
  std::optional<std::string> currencyCode;  ///< ISO 4217, for columns that hold money
};

struct Cell {
  std::optional<std::string> value;
};

struct Row {
  std::vector<Cell> cells;  ///< one for each header
};

struct ReportResponse {
  std::optional<std::vector<Header>> headers;
  std::optional<std::vector<Row>> rows;
  std::optional<Row> totals;
};

struct PaymentDate {
  std::optional<std::int64_t> year;
  std::optional<std::int64_t> month;
  std::optional<std::int64_t> day;
};

struct Payment {
  std::string name;
  std::optional<PaymentDate> date;    ///< absent for the unpaid balance
  std::optional<std::string> amount;  ///< as the service formats it, with the currency sign
};

struct PaymentsResponse {
  std::optional<std::vector<Payment>> payments;
};

/// The service refused; `what()` is the description in the user's language.
class AdSenseError : public std::exception {
 public:
  /// A status outside 200 to 299, with the answer's body (empty when it is no UTF-8).
  struct Http {
    std::int64_t statusCode;
    std::string body;
  };
  /// The signed-in user has no AdSense account.
  struct NoAccount {};

  static AdSenseError http(std::int64_t statusCode, const std::string& body);
  static AdSenseError noAccount();

  [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

  std::variant<Http, NoAccount> kind;

 private:
  AdSenseError(std::variant<Http, NoAccount> errorCase, std::string description);

  std::string description_;
};

/// Authorised requests to the AdSense Management API. Every operation waits for its answer and
/// throws AdSenseError, platform::TransportError or UnreadableAnswer.
struct AdSenseClient {
  std::string accessToken;
  std::string baseURL;                                   ///< without a trailing slash
  std::chrono::milliseconds timeout = requestTimeout();  ///< for each request

  /// The body of the answer to a GET with the bearer token.
  [[nodiscard]] std::string authorizedGet(const std::string& url) const;
  /// The resource name of the user's first account.
  [[nodiscard]] std::string fetchAccountName() const;
  /// A report of an account; the query items are sent in their order.
  [[nodiscard]] ReportResponse generateReport(const std::string& accountName,
                                              const std::vector<platform::QueryItem>& items) const;
  /// The payments of an account, the unpaid balance among them.
  [[nodiscard]] PaymentsResponse fetchPayments(const std::string& accountName) const;
};

AccountsResponse decodeAccountsResponse(std::string_view body);
ReportResponse decodeReportResponse(std::string_view body);
PaymentsResponse decodePaymentsResponse(std::string_view body);

}  // namespace velmora
