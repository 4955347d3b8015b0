#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "platform/foundation/http.hpp"
#include "sandbox/api_error.hpp"
#include "sandbox/payments.hpp"
#include "sandbox/publisher.hpp"
#include "sandbox/reports.hpp"
#include "sandbox/server.hpp"

using namespace sandbox;
using platform::Json;

namespace {

constexpr std::chrono::sys_days today = std::chrono::year{2026} / 5 / 21;

const Publisher& publisher() {
  static const Publisher instance(1, "EUR", today);
  return instance;
}

int statusOf(const Query& query) {
  try {
    generateReport(publisher(), query);
  } catch (const ApiError& error) {
    return error.status;
  }
  return 200;
}

}  // namespace

TEST(SandboxReports, haveTheServicesShape) {
  const auto report = generateReport(publisher(), {{"dateRange", "LAST_30_DAYS"},
                                                   {"dimensions", "DATE"},
                                                   {"metrics", "CLICKS"},
                                                   {"metrics", "ESTIMATED_EARNINGS"},
                                                   {"orderBy", "-CLICKS"}});
  EXPECT_EQ(report["headers"][2]["currencyCode"], "EUR");
  EXPECT_FALSE(report["headers"][1].contains("currencyCode"));
  EXPECT_EQ(report["totalMatchedRows"], std::to_string(report["rows"].size()));
  for (const char* row : {"totals", "averages"}) EXPECT_EQ(report[row]["cells"][0], Json::object());
  const auto clicks = [&](int row) {
    return std::stoi(report["rows"][row]["cells"][1]["value"].get<std::string>());
  };
  EXPECT_GE(clicks(0), clicks(1));
  const auto total = generateReport(publisher(), {{"dateRange", "TODAY"}, {"metrics", "CLICKS"}});
  EXPECT_EQ(total["totals"]["cells"], total["rows"][0]["cells"]);
  EXPECT_EQ(statusOf({{"dateRange", "TODAY"}}), 400);
  EXPECT_EQ(statusOf({{"dateRange", "TODAY"}, {"metrics", "NONE"}}), 400);
  EXPECT_EQ(statusOf({{"dateRange", "TODAY"}, {"metrics", "CLICKS"}, {"orderBy", "+X"}}), 400);
  EXPECT_EQ(statusOf({{"metrics", "CLICKS"}, {"startDate.year", "2026"}}), 400);
}

TEST(SandboxPayments, areSettledOnThe21st) {
  const auto list = listPayments(publisher())["payments"];
  EXPECT_TRUE(list[0]["name"].get<std::string>().ends_with("/youtube-unpaid"));
  EXPECT_TRUE(list[1]["name"].get<std::string>().ends_with("/unpaid"));
  EXPECT_FALSE(list[1].contains("date"));
  EXPECT_EQ(list[2]["date"]["month"], 5);
  const auto april =
      publisher().earnings(std::chrono::year{2026} / 4 / 1, std::chrono::year{2026} / 4 / 30);
  EXPECT_EQ(list[2]["amount"], amountText(april, "EUR", 2));
  EXPECT_EQ(amountText(1234567.891, "USD", 2), "$1,234,567.89");
  EXPECT_EQ(amountText(1235, "JPY", 0), "¥1,235 JPY");
  EXPECT_EQ(amountText(123, "CHF", 2), "CHF 123.00");
}

TEST(SandboxNotices, haveTheServicesShape) {
  EXPECT_EQ(listAlerts(publisher(), {}), Json::object());
  EXPECT_EQ(listPolicyIssues(publisher(), {}, 10, ""), Json::object());
  const std::vector<PolicyIssue> issues{
      {"WARNED", "a"}, {"AD_SERVING_DISABLED", "b"}, {"WARNED", "c"}};
  const auto first = listPolicyIssues(publisher(), issues, 2, "");
  ASSERT_EQ(first["policyIssues"].size(), 2U);
  EXPECT_EQ(first["policyIssues"][0]["warningEscalationDate"]["day"], 28);
  EXPECT_FALSE(first["policyIssues"][1].contains("warningEscalationDate"));
  const auto rest = listPolicyIssues(publisher(), issues, 2, first["nextPageToken"]);
  EXPECT_EQ(rest["policyIssues"][0]["site"], "c");
  EXPECT_FALSE(rest.contains("nextPageToken"));
  EXPECT_THROW(listPolicyIssues(publisher(), issues, 2, "9"), ApiError);
  EXPECT_EQ(parseAlert("SEVERE=a=b")->message, "a=b");
  for (const char* none : {"SEVERE", "SEVERE=", "LOUD=x"}) EXPECT_FALSE(parseAlert(none)) << none;
  for (const char* none : {"token=drop_", "report=invalid_grant", "report=html-299"})
    EXPECT_EQ(parseFault(none).has_value(), std::string(none).starts_with("token")) << none;
}

TEST(SandboxServer, refusesStrangers) {
  Server server({.today = today});
  const auto get = [&](const std::string& path, const std::string& token) {
    return platform::sendRequest({.url = server.baseURL() + path,
                                  .headers = {{"Authorization", "Bearer " + token}},
                                  .body = std::nullopt});
  };
  const auto refused = get("/accounts", "wrong");
  EXPECT_EQ(refused.status, 401);
  EXPECT_EQ(Json::parse(refused.body)["error"]["status"], "UNAUTHENTICATED");
  EXPECT_EQ(get("/nothing", "ya29.sandbox-access-token").status, 404);
  const auto token = [&](const std::string& type, const std::string& body) {
    const auto response = platform::sendRequest(
        {.url = server.tokenURL(), .headers = {{"Content-Type", type}}, .body = body});
    const auto answer = Json::parse(response.body);
    return std::to_string(response.status) + " " + answer.value("error", "no error");
  };
  const std::string client =
      "client_id=648213975310-sandbox.apps.example&client_secret=sandbox-client-secret&"
      "grant_type=refresh_token&refresh_token=";
  const std::string form = "application/x-www-form-urlencoded";
  EXPECT_EQ(token(form, client + "1%2F%2F0sandbox%2Brefresh%2Ftoken%3D"), "200 no error");
  EXPECT_EQ(token(form + ";charset=UTF-8", client + "1//0sandbox%2Brefresh/token%3D"),
            "200 no error");
  EXPECT_EQ(token(form, client + "revoked"), "400 invalid_grant");
  EXPECT_EQ(token(form, "client_id=x"), "401 invalid_client");
  server.endSignIns();
  EXPECT_EQ(token(form, client + "1%2F%2F0sandbox%2Brefresh%2Ftoken%3D"), "400 invalid_grant");
  EXPECT_EQ(get("/accounts", "ya29.sandbox-access-token").status, 401);
}
