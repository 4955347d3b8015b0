#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <future>
#include <set>

#include "VelmoraWidget/AccountResolution.hpp"
#include "VelmoraWidget/EarningsProvider.hpp"
#include "VelmoraWidget/SharedKeychain.hpp"
#include "VelmoraWidget/SnapshotCache.hpp"
#include "VelmoraWidget/SnapshotFetch.hpp"
#include "platform/foundation/background_tasks.hpp"
#include "platform/foundation/http.hpp"
#include "platform/foundation/user_defaults.hpp"
#include "sandbox/server.hpp"
#include "tests/support/environment.hpp"
#include "tests/support/held_clock.hpp"
#include "tests/support/replaced_constants.hpp"

using namespace velmora;
using namespace std::chrono_literals;
using platform::UserDefaults;
using sandbox::Fault;
using sandbox::Step;

namespace {

constexpr std::chrono::sys_days today = std::chrono::year{2026} / 5 / 21;

/// A signed-in user and a publisher on loopback, on the morning of 2026-05-21.
class Fetch : public tests::Environment {
 public:
  Fetch() : server_({.today = today}) {
    tests::setAdSenseBaseURL(server_.baseURL());
    tests::setRequestTimeout(20s);
    tests::holdClock(tests::instant("2026-05-21T09:30:00.25"));
    writeClientFile(server_.clientFile().dump());
    storeKeychainItem(refreshTokenAccount, server_.address()["refreshToken"]);
  }

  static std::string fetchError() {
    try {
      fetchSnapshot();
    } catch (const std::exception& error) {
      return error.what();
    }
    return "no error";
  }

  static platform::Timeline<EarningsEntry> timeline() {
    std::promise<platform::Timeline<EarningsEntry>> promise;
    EarningsProvider{}.getTimeline({}, [&](const auto& result) { promise.set_value(result); });
    auto result = promise.get_future().get();
    platform::drainBackgroundTasks();
    return result;
  }

  /// Answers the daily report with these rows of date and earnings.
  void setReport(const std::string& rows) {
    server_.setOverride([rows](Step step, const auto&) -> std::optional<std::string> {
      if (step != Step::report) return std::nullopt;
      return R"({"headers":[{"name":"DATE"},{"name":"ESTIMATED_EARNINGS","currencyCode":"GBP"}],"rows":[)" +
             rows + "]}";
    });
  }

 protected:
  sandbox::Server server_;
};

std::string reportRow(const std::string& day, const std::string& earnings) {
  return R"({"cells":[{"value":")" + day + R"("},{"value":")" + earnings + R"("}]})";
}

}  // namespace

TEST_F(Fetch, makesItsRequestsInOrderOverOneConnection) {
  const auto snapshot = fetchSnapshot();
  EXPECT_EQ(snapshot.updatedAt, tests::instant("2026-05-21T09:30:00.25"));
  EXPECT_EQ(snapshot.currency, "EUR");
  EXPECT_GT(snapshot.monthToDate, snapshot.today);
  EXPECT_GT(snapshot.monthLastYear, 0);
  EXPECT_TRUE(snapshot.balance->starts_with("€"));
  EXPECT_EQ(snapshot.lastPaymentDateLabel, "May 21, 2026");
  EXPECT_EQ(loadCachedSnapshot(), snapshot);

  std::vector<std::string> targets;
  std::set<int> ports;
  for (const auto& request : server_.takeRequests()) {
    targets.push_back(request.target);
    ports.insert(request.remotePort);
    if (request.method == "GET") {
      EXPECT_EQ(request.headers.find("Authorization")->second, "Bearer ya29.sandbox-access-token");
    }
    EXPECT_EQ(request.headers.count("User-Agent") + request.headers.count("Accept"), 0U);
  }
  EXPECT_EQ(ports.size(), 1U);
  const std::string account = *UserDefaults::standard().string(accountCacheKey);
  EXPECT_THAT(targets.at(2),
              testing::EndsWith("&startDate.year=2026&startDate.month=4&startDate.day=17&"
                                "endDate.year=2026&endDate.month=5&endDate.day=21"));
  const auto lastYear = "/v2/" + account +
                        "/reports:generate?dateRange=CUSTOM&metrics=ESTIMATED_EARNINGS&"
                        "startDate.year=2025&startDate.month=5&startDate.day=1&"
                        "endDate.year=2025&endDate.month=5&endDate.day=21";
  EXPECT_THAT(targets,
              testing::ElementsAre("/token", "/v2/accounts", testing::HasSubstr("dimensions=DATE"),
                                   lastYear, "/v2/" + account + "/payments"));
  fetchSnapshot();
  EXPECT_EQ(server_.takeRequests().size(), 4U) << "the account is known now";
}

TEST_F(Fetch, trustsTheCachedAccountName) {
  const auto defaults = UserDefaults::standard();
  defaults.setString(accountCacheKey, "accounts/pub-other");
  EXPECT_THAT(fetchError(), testing::StartsWith("AdSense error (404): {"));
  EXPECT_EQ(server_.takeRequests().back().target.find("/v2/accounts/pub-other/reports:generate?"),
            0U);
  defaults.setString(accountCacheKey, "accounts/a b");
  EXPECT_THROW(fetchSnapshot(), platform::TransportError);
  EXPECT_EQ(defaults.string(accountCacheKey), "accounts/a b");
}

TEST_F(Fetch, takesTheFirstAccountAndKeepsItWhenTheReportFails) {
  std::string accounts =
      R"({"accounts":[{"name":"accounts/one","state":"CLOSED"},{"name":"accounts/two"}]})";
  server_.setOverride([&accounts](Step step, const auto&) {
    return step == Step::accounts ? std::optional(accounts) : std::nullopt;
  });
  EXPECT_THAT(fetchError(), testing::StartsWith("AdSense error (404)"));
  EXPECT_EQ(UserDefaults::standard().string(accountCacheKey), "accounts/one");
  UserDefaults::standard().remove(accountCacheKey);
  for (const char* none : {"{}", R"({"accounts":[]})", R"({"accounts":null})"}) {
    accounts = none;
    EXPECT_EQ(fetchError(), "No AdSense account found for this Google account.");
  }
  EXPECT_EQ(UserDefaults::standard().string(accountCacheKey), std::nullopt);
}

TEST_F(Fetch, countsFromTheLatestReportedDay) {
  setReport(reportRow("2026-05-20", "3.5") + "," + reportRow("2026-05-19", "2"));
  const auto snapshot = fetchSnapshot();
  EXPECT_EQ(snapshot.today, 3.5);
  EXPECT_EQ(snapshot.yesterday, 2);
  EXPECT_EQ(snapshot.currency, "GBP");
  EXPECT_THAT(server_.takeRequests()[3].target, testing::EndsWith("endDate.day=20"));
}

TEST_F(Fetch, storesZerosForAnEmptyReport) {
  fetchSnapshot();
  server_.takeRequests();
  setReport("");
  const auto snapshot = fetchSnapshot();
  VelmoraSnapshot zeros;
  zeros.currency = "GBP";
  zeros.updatedAt = tests::instant("2026-05-21T09:30:00.25");
  EXPECT_EQ(snapshot, zeros);
  EXPECT_EQ(loadCachedSnapshot(), zeros);
  EXPECT_EQ(server_.takeRequests().size(), 2U);
}

TEST_F(Fetch, noFaultAtAnyStepTouchesTheCache) {
  fetchSnapshot();
  const auto before = UserDefaults::standard().data(snapshotCacheKey);
  const auto cached = loadCachedSnapshot();
  tests::setRequestTimeout(400ms);
  for (const auto& [name, step] : sandbox::stepNames()) {
    for (const char* kind : {"300", "401", "403", "500", "503", "drop", "truncate", "garbage",
                             "html", "empty", "slow", "redirect-loop"}) {
      if (step == Step::accounts) UserDefaults::standard().remove(accountCacheKey);
      server_.setFaults({{step, *sandbox::parseFaultKind(kind)}});
      const auto result = timeline();
      ASSERT_EQ(result.entries.size(), 1U);
      EXPECT_EQ(result.entries.front().snapshot, cached) << name << "=" << kind;
      EXPECT_TRUE(result.entries.front().isConnected);
      EXPECT_EQ(UserDefaults::standard().data(snapshotCacheKey), before) << name << "=" << kind;
    }
  }
}

TEST_F(Fetch, errorsCarryTheServersBody) {
  server_.setFaults({{Step::payments, {Fault::Kind::status, 403}}});
  EXPECT_THAT(fetchError(), testing::StartsWith(R"(AdSense error (403): {"error":{"code":403)"));
  server_.setFaults({{Step::token, {Fault::Kind::status, 401}}});
  EXPECT_EQ(fetchError(), "Authentication error: Bad Request");
}

using Provider = Fetch;

TEST_F(Provider, snapshotNeverFetches) {
  std::optional<EarningsEntry> entry;
  const auto ask = [&entry] {
    entry.reset();
    EarningsProvider{}.getSnapshot({}, [&](const auto& answer) { entry = answer; });
    return entry.has_value();
  };
  ASSERT_TRUE(ask());
  EXPECT_EQ(entry->snapshot, VelmoraSnapshot::sample());
  EXPECT_TRUE(entry->isConnected);
  storeKeychainItem(refreshTokenAccount, "");
  ASSERT_TRUE(ask());
  EXPECT_TRUE(entry->isConnected) << "an empty token is a token";
  clearKeychain();
  storeKeychainItem(objectivesAccount, R"({"daily":1,"monthly":2})");
  ASSERT_TRUE(ask());
  EXPECT_FALSE(entry->isConnected);
  EXPECT_EQ(entry->objectives, (Objectives{1, 2}));
  EXPECT_TRUE(server_.takeRequests().empty());
  const auto placeholder = EarningsProvider{}.placeholder({});
  EXPECT_EQ(placeholder.objectives, defaultObjectives);
  EXPECT_TRUE(placeholder.isConnected);
}

TEST_F(Provider, timelineWithoutATokenFetchesNothing) {
  clearKeychain();
  const auto result = timeline();
  EXPECT_FALSE(result.entries.front().isConnected);
  EXPECT_EQ(result.entries.front().snapshot, VelmoraSnapshot::sample());
  EXPECT_EQ(result.policy.date, tests::instant("2026-05-21T10:00:00.25"));
  EXPECT_TRUE(server_.takeRequests().empty());
}

TEST_F(Provider, timelineReadsTheClockAfterTheFetch) {
  const auto start = tests::instant("2026-05-21T09:30:00");
  tests::holdClock(start, 1);
  const auto result = timeline();
  EXPECT_EQ(result.entries.front().snapshot.updatedAt, start);
  EXPECT_EQ(result.entries.front().date, start + 1);
  EXPECT_EQ(result.policy.date, start + 2 + 1800);
}

TEST_F(Provider, answersEachOfManyRequestsOnce) {
  std::atomic<int> answers = 0;
  for (int i = 0; i < 6; ++i)
    EarningsProvider{}.getTimeline({}, [&answers](const auto&) { ++answers; });
  platform::drainBackgroundTasks();
  EXPECT_EQ(answers, 6);
  EXPECT_TRUE(loadCachedSnapshot());
}
