#include "VelmoraWidget/AdSenseClient.hpp"

#include "VelmoraWidget/UnreadableAnswer.hpp"
#include "platform/foundation/http.hpp"
#include "platform/foundation/json.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/text.hpp"

namespace velmora {

namespace {

using platform::JsonDecoder;

constexpr int good = 200;  // or another below 300; which one makes no difference
// A report of 100,000 rows has 17 MB.
constexpr std::size_t largestAnswer = std::size_t{24} << 20U;

Account decodeAccount(const JsonDecoder& object) {
  return {object.at("name").string(), object.optionalString("displayName")};
}

Header decodeHeader(const JsonDecoder& object) {
  return {object.optionalString("name"), object.optionalString("type"),
          object.optionalString("currencyCode")};
}

Row decodeRow(const JsonDecoder& object) {
  Row row;
  for (const auto& cell : object.at("cells").array())
    row.cells.push_back({cell.optionalString("value")});
  return row;
}

PaymentDate decodePaymentDate(const JsonDecoder& object) {
  return {object.optionalInteger("year"), object.optionalInteger("month"),
          object.optionalInteger("day")};
}

Payment decodePayment(const JsonDecoder& object) {
  const auto date = object.optionalAt("date");
  return {object.at("name").string(), date ? std::optional(decodePaymentDate(*date)) : std::nullopt,
          object.optionalString("amount")};
}

template <class Element>
std::optional<std::vector<Element>> decodeList(const JsonDecoder& object, const char* key,
                                               Element (*decode)(const JsonDecoder&)) {
  const auto list = object.optionalAt(key);
  if (!list) return std::nullopt;
  std::vector<Element> elements;
  for (const auto& element : list->array()) elements.push_back(decode(element));
  return elements;
}

}  // namespace

AdSenseError::AdSenseError(std::variant<Http, NoAccount> errorCase, std::string description)
    : kind(std::move(errorCase)), description_(std::move(description)) {}

AdSenseError AdSenseError::http(std::int64_t statusCode, const std::string& body) {
  return {Http{statusCode, body},
          platform::localizedFormat("AdSense error (%lld): %s", {statusCode, body})};
}

AdSenseError AdSenseError::noAccount() {
  return {NoAccount{},
          platform::localizedString("No AdSense account found for this Google account.")};
}

AccountsResponse decodeAccountsResponse(std::string_view body) {
  return {decodeList(JsonDecoder(body), "accounts", decodeAccount)};
}

ReportResponse decodeReportResponse(std::string_view body) {
  const JsonDecoder object(body);
  const auto totals = object.optionalAt("totals");
  return {decodeList(object, "headers", decodeHeader), decodeList(object, "rows", decodeRow),
          totals ? std::optional(decodeRow(*totals)) : std::nullopt};
}

PaymentsResponse decodePaymentsResponse(std::string_view body) {
  return {decodeList(JsonDecoder(body), "payments", decodePayment)};
}

std::string AdSenseClient::authorizedGet(const std::string& url) const {
  auto response = platform::sendRequest({.url = url,
                                         .headers = {{"Authorization", "Bearer " + accessToken}},
                                         .body = std::nullopt,
                                         .timeout = timeout,
                                         .largestAnswer = largestAnswer});
  if (response.status < 200 || response.status > 299) {
    const bool isText = platform::repairedUtf8(response.body) == response.body;
    throw AdSenseError::http(response.status, isText ? response.body : "");
  }
  return std::move(response.body);
}

std::string AdSenseClient::fetchAccountName() const {
  const auto answer =
      decodeAnswer(authorizedGet(baseURL + "/accounts"), good, decodeAccountsResponse);
  if (!answer.accounts || answer.accounts->empty()) throw AdSenseError::noAccount();
  return answer.accounts->front().name;
}

ReportResponse AdSenseClient::generateReport(const std::string& accountName,
                                             const std::vector<platform::QueryItem>& items) const {
  const auto url = platform::urlWithQuery(baseURL + "/" + accountName + "/reports:generate", items);
  if (!url) throw platform::TransportError("The account name makes no valid address.");
  return decodeAnswer(authorizedGet(*url), good, decodeReportResponse);
}

PaymentsResponse AdSenseClient::fetchPayments(const std::string& accountName) const {
  return decodeAnswer(authorizedGet(baseURL + "/" + accountName + "/payments"), good,
                      decodePaymentsResponse);
}

}  // namespace velmora
