#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>

#include <cmath>

#include "VelmoraWidget/AccountResolution.hpp"
#include "VelmoraWidget/SharedKeychain.hpp"
#include "companion/history/csv.hpp"
#include "companion/history/report.hpp"
#include "companion/history/store.hpp"
#include "companion/history/summary.hpp"
#include "companion/history/update.hpp"
#include "companion/user_data.hpp"
#include "platform/foundation/user_defaults.hpp"
#include "sandbox/server.hpp"
#include "tests/support/environment.hpp"
#include "tests/support/held_clock.hpp"
#include "tests/support/program.hpp"
#include "tests/support/replaced_constants.hpp"

using namespace companion;
using namespace std::chrono_literals;
using platform::Json;
using sandbox::Fault;
using sandbox::Step;
using std::chrono::days;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

constexpr Day today = std::chrono::year{2026} / 5 / 21;
const auto morning = tests::instant("2026-05-21T09:30:00.25");

std::string row(const std::string& day, const std::string& earnings) {
  return R"({"cells":[{"value":")" + day + R"("},{"value":")" + earnings + R"("}]})";
}

std::string report(const std::string& rows, const std::string& currency = "GBP") {
  return R"({"headers":[{"name":"DATE"},{"name":"ESTIMATED_EARNINGS","currencyCode":")" + currency +
         R"("}],"rows":[)" + rows + "]}";
}

History parsed(const std::string& rows, int count = 3) {
  return historyFrom(velmora::decodeReportResponse(report(rows)), "accounts/pub-1",
                     today - days{count - 1}, today, morning);
}

std::vector<double> earnings(const History& history) {
  std::vector<double> amounts;
  for (const auto& day : history.days) amounts.push_back(day.figures.earnings);
  return amounts;
}

/// Days up to today that earned what they are given, the last of it today.
History historyOf(const std::vector<double>& amounts) {
  History history{"accounts/pub-1", "EUR", morning, {}};
  auto date = today - days{amounts.size()};
  for (const double amount : amounts) {
    history.days.push_back({date += days{1}, {}});
    history.days.back().figures.earnings = amount;
  }
  return history;
}

/// A signed-in user and a publisher on loopback.
class HistoryTest : public tests::Environment {
 public:
  HistoryTest() : server_({.today = today}) {
    tests::setAdSenseBaseURL(server_.baseURL());
    tests::setRequestTimeout(20s);
    tests::holdClock(morning);
    setenv("XDG_DATA_HOME", (folder_ / "data").c_str(), 1);
    const auto data = folder_ / "data/velmora-widget";
    fs::create_directories(data);
    tests::writeFile(data / "client_secret.json", server_.clientFile().dump());
    storeKeychainItem(velmora::refreshTokenAccount, server_.address()["refreshToken"]);
  }

  /// The first days of the reports that were asked for since the last call.
  std::vector<std::string> asked() {
    std::vector<std::string> starts;
    for (const auto& request : server_.takeRequests()) {
      const auto at = request.target.find("startDate.year");
      if (at != std::string::npos)
        starts.push_back(request.target.substr(at, request.target.find("&endDate") - at));
    }
    return starts;
  }

  [[nodiscard]] fs::path file() const { return defaultsFile().parent_path() / "history.json"; }

 protected:
  sandbox::Server server_;
};

}  // namespace

TEST(HistoryDays, areThoseAskedForWhateverTheReportHolds) {
  const auto odd =
      parsed(row("2026-05-21", "3") + "," + row("2026-05-19", "1") + "," + row("2026-05-18", "99") +
             "," + row("2026-05-22", "99") + "," + row("2026-05-19", "2") + "," +
             row("2026-5-20", "99") + "," + row("rubbish", "99"));
  EXPECT_THAT(earnings(odd), testing::ElementsAre(2, 0, 3));
  EXPECT_EQ(odd.currency, "GBP");
  EXPECT_THAT(earnings(parsed(row("2026-05-19", "NaN") + "," + row("2026-05-20", "-inf") + "," +
                              row("2026-05-21", "1e999"))),
              testing::Each(0));
  std::string many;
  for (int i = 0; i < 100'000; ++i)
    many += (i == 0 ? "" : ",") + row(dayText(today - days{i % 5000}), std::to_string(i));
  EXPECT_THAT(earnings(parsed(many, 2)), testing::ElementsAre(95'001, 95'000)) << "the later wins";
  for (const char* wrong : {"2026-02-29", "2026-13-01", "2026-1-02", "2026-01-02 ", "", "x"})
    EXPECT_FALSE(dayFromText(wrong)) << wrong;
  EXPECT_EQ(dayText(*dayFromText("2028-02-29")), "2028-02-29");
}

TEST(HistoryDays, areCutAndWritten) {
  const auto history = historyOf({1.5, 0.07 * 100, 1e-7});
  EXPECT_TRUE(covers(history, 3, today));
  EXPECT_FALSE(covers(history, 4, today));
  EXPECT_FALSE(covers(history, 1, today + days{1}));
  EXPECT_THAT(earnings(lastDays(history, 2, today - days{1})),
              testing::ElementsAre(1.5, testing::DoubleEq(7)));
  auto quoted = history;
  quoted.currency = "a\"b,c";
  EXPECT_EQ(csvForm(quoted),
            "date,currency,earnings,page_views,impressions,clicks,rpm,cpc,ctr\r\n"
            "2026-05-19,\"a\"\"b,c\",1.5,0,0,0,0,0,0\r\n"
            "2026-05-20,\"a\"\"b,c\",7,0,0,0,0,0,0\r\n"
            "2026-05-21,\"a\"\"b,c\",0.0000001,0,0,0,0,0,0\r\n");
  EXPECT_EQ(
      jsonForm(lastDays(history, 1, today)).dump(),
      R"({"account":"accounts/pub-1","currency":"EUR",)"
      R"("updatedAt":"2026-05-21T09:30:00.250Z","days":[{"date":"2026-05-21",)"
      R"("earnings":1e-07,"pageViews":0,"impressions":0,"clicks":0,"rpm":0,"cpc":0,"ctr":0}]})");
}

TEST(HistorySummary, estimatesTheMonthFromItsWeekdays) {
  // 2026-05-21 is a Thursday. Weekdays earn 10, Saturdays 3, Sundays 1.
  std::vector<double> amounts;
  for (auto date = today - days{99}; date <= today; date += days{1}) {
    const auto weekday = std::chrono::weekday{date};
    amounts.push_back(weekday == std::chrono::Saturday ? 3
                      : weekday == std::chrono::Sunday ? 1
                                                       : 10);
  }
  amounts.back() = 4;  // so far
  const double month = 21 * 10 + 5 * 3 + 5 * 1;
  EXPECT_DOUBLE_EQ(*monthEstimate(historyOf(amounts)), month);
  amounts.back() = 25;
  EXPECT_DOUBLE_EQ(*monthEstimate(historyOf(amounts)), month + 15);
  // Where the account is, today may not have begun: then yesterday is not over.
  amounts.back() = 0;
  *(amounts.end() - 2) = 2;
  EXPECT_EQ(firstOpenDay(historyOf(amounts)), today - days{1});
  EXPECT_DOUBLE_EQ(*monthEstimate(historyOf(amounts)), month);

  EXPECT_FALSE(monthEstimate(historyOf({})));
  EXPECT_FALSE(monthEstimate(historyOf({0, 0, 0})));
  std::vector<double> young(40, 0);
  std::fill(young.end() - 7, young.end(), 5);
  EXPECT_FALSE(monthEstimate(historyOf(young))) << "six days are over";
  young[32] = 5;
  EXPECT_DOUBLE_EQ(*monthEstimate(historyOf(young)), 5 * 18) << "14 to 31 May";
  EXPECT_FALSE(monthEstimate(historyOf(std::vector<double>(10, 5)))) << "the month is not known";
  EXPECT_EQ(sumOf(historyOf({1, 2, 6}).days), 9);
  EXPECT_EQ(meanOf(historyOf({1, 2, 6}).days), 3);
  EXPECT_FALSE(meanOf(historyOf({}).days));
}

TEST_F(HistoryTest, asksOnceInHalfAnHour) {
  const auto first = upToDateHistory(35);
  ASSERT_TRUE(first.history);
  EXPECT_FALSE(first.problem);
  EXPECT_TRUE(first.isKept);
  EXPECT_EQ(first.history->days.size(), 35U);
  EXPECT_EQ(first.history->days.back().date, today);
  EXPECT_GT(sumOf(first.history->days), 100);
  const auto requests = server_.takeRequests();
  ASSERT_EQ(requests.size(), 3U);
  EXPECT_THAT(requests.back().target, HasSubstr("&metrics=PAGE_VIEWS_CTR&startDate.year=2026&"
                                                "startDate.month=4&startDate.day=17&endDate."));
  tests::holdClock(morning + 1799);
  EXPECT_EQ(upToDateHistory(35).history, first.history);
  EXPECT_EQ(upToDateHistory(7).history->days.size(), 7U);
  EXPECT_TRUE(asked().empty());
  EXPECT_EQ(upToDateHistory(730).history->days.size(), 730U);
  EXPECT_THAT(asked(),
              testing::ElementsAre("startDate.year=2024&startDate.month=5&startDate.day=22"));
  tests::holdClock(morning + 2 * 1800);
  EXPECT_EQ(upToDateHistory(7).history->days.size(), 7U);
  EXPECT_EQ(asked().size(), 1U);
  EXPECT_EQ(upToDateHistory(730).history->days.size(), 730U)
      << "nothing is lost by asking for less";
  EXPECT_TRUE(asked().empty());
  tests::holdClock(morning + -60);  // set back: the future is not fresh
  upToDateHistory(7);
  EXPECT_EQ(asked().size(), 1U);
  tests::holdClock(tests::instant("2026-05-21T23:59:00"));
  upToDateHistory(7);
  tests::holdClock(tests::instant("2026-05-22T00:01:00"));
  EXPECT_EQ(upToDateHistory(7).history->days.back().date, today + days{1});
  EXPECT_EQ(asked().size(), 2U) << "a new day was not fetched yet";
}

TEST_F(HistoryTest, fallsBackOnTheDaysAtHand) {
  for (const char* fault : {"report=503", "report=garbage", "report=drop", "token=401"}) {
    server_.setFaults({*sandbox::parseFault(fault)});
    const auto answer = upToDateHistory(3);
    EXPECT_TRUE(answer.problem) << fault;
    EXPECT_FALSE(answer.history) << fault;
    EXPECT_FALSE(fs::exists(file())) << fault;
  }
  server_.setFaults({});
  const auto good = upToDateHistory(10).history;
  tests::holdClock(morning + 3 * 86400);
  server_.setFaults({{Step::report, {Fault::Kind::status, 429}}});
  const auto answer = upToDateHistory(10);
  EXPECT_TRUE(answer.problem);
  EXPECT_EQ(answer.history, good) << "no day is made up";
  asked();
  upToDateHistory(10);
  EXPECT_EQ(asked().size(), 1U) << "a failure does not count";
  EXPECT_EQ(historyAtHand(35), good);
  EXPECT_EQ(historyAtHand(2)->days.size(), 2U);
  EXPECT_TRUE(server_.takeRequests().empty());
}

TEST_F(HistoryTest, keepsDaysForTheUserAlone) {
  const auto defaults = platform::UserDefaults::standard();
  defaults.setString(velmora::accountCacheKey, "accounts/pub-1");
  const auto mask = ::umask(0);
  saveHistory(historyOf({1, 2}));
  ::umask(mask);
  EXPECT_EQ(fs::status(file()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(loadHistory(), historyOf({1, 2}));
  const auto whole = tests::readFile(file());
  auto gap = Json::parse(whole);
  gap["days"][1]["date"] = "2026-05-22";
  auto empty = Json::parse(whole);
  empty["days"] = Json::array();
  for (const auto& damaged : {whole.substr(0, whole.size() / 2), std::string(), std::string("[]"),
                              gap.dump(), empty.dump(), std::string(2'000'000, ' ')}) {
    tests::writeFile(file(), damaged);
    EXPECT_FALSE(loadHistory()) << damaged.substr(0, 80);
  }
  defaults.remove(velmora::accountCacheKey);
  EXPECT_TRUE(upToDateHistory(2).history) << "begun anew";
  EXPECT_EQ(loadHistory()->days.size(), 2U);
  defaults.setString(velmora::accountCacheKey, "accounts/pub-2");
  EXPECT_FALSE(loadHistory()) << "another account's";
  defaults.remove(velmora::accountCacheKey);
  EXPECT_FALSE(loadHistory()) << "a forgotten account's";
  signOut();
  EXPECT_FALSE(fs::exists(file()));
  EXPECT_TRUE(forgetHistory()) << "there is nothing to forget";
}

TEST_F(HistoryTest, aSignOutMeanwhileStoresNothing) {
  upToDateHistory(2);
  tests::holdClock(morning + 3600);
  server_.setOverride([&](Step step, const auto&) -> std::optional<std::string> {
    if (step == Step::report) {
      clearKeychain();
      forgetHistory();
    }
    return std::nullopt;
  });
  const auto answer = upToDateHistory(2);
  EXPECT_TRUE(answer.problem);
  EXPECT_FALSE(answer.history);
  EXPECT_FALSE(fs::exists(file()));
}

TEST_F(HistoryTest, printsWhatCannotBeKept) {
  setenv("XDG_STATE_HOME", "/dev/null", 1);
  const auto answer = upToDateHistory(2);
  EXPECT_EQ(answer.history->days.size(), 2U);
  EXPECT_FALSE(answer.isKept);
}

TEST_F(HistoryTest, theProgramSaysOneThing) {
  const auto call = [](const std::string& words) {
    return tests::run({"/bin/sh", "-c", VELMORA " history " + words});
  };
  const auto lines = [](const std::string& text) {
    return std::count(text.begin(), text.end(), '\n');
  };
  EXPECT_EQ(call("--offline").status, 1);
  const auto fresh = call("");
  EXPECT_EQ(fresh.status, 0);
  EXPECT_EQ(fresh.errors, "");
  EXPECT_EQ(Json::parse(fresh.output)["days"].size(), 35U);
  const std::pair<const char*, const char*> files[] = {{"a.png", "\x89PNG"},
                                                       {"a.svg", "<?xml"},
                                                       {"a.pdf", "%PDF-1"},
                                                       {"a.csv", "date,currency,"},
                                                       {"a.json", "{\"account\":\"accounts/pub-"}};
  for (const auto& [name, start] : files) {
    const auto result = call("--scale 2 --output " + (folder_ / name).string());
    EXPECT_EQ(result.status, 0) << name << result.errors;
    EXPECT_EQ(result.output + result.errors, "") << name;
    EXPECT_TRUE(tests::readFile(folder_ / name).starts_with(start)) << name;
  }
  EXPECT_EQ(lines(tests::readFile(folder_ / "a.csv")), 36);
  for (const char* wrong : {"--output a.bmp", "--output ''", "--days 0", "--days 731", "--days x",
                            "--scale 9", "--scale nan", "extra"}) {
    EXPECT_EQ(call(wrong).status, 2) << wrong;
    EXPECT_EQ(lines(call(wrong).errors), 1) << wrong;
  }
  for (const char* unwritable : {"--output /proc/a.csv", "--output /nowhere/a.pdf", ">/dev/full"}) {
    const auto result = call(unwritable);
    EXPECT_EQ(result.status, 1) << unwritable;
    EXPECT_EQ(lines(result.errors), 1) << result.errors;
  }

  auto old = Json::parse(tests::readFile(file()));
  old["updatedAt"] = 1;
  tests::writeFile(file(), old.dump());
  server_.setFaults({{Step::report, {Fault::Kind::slow}}});
  tests::setRequestTimeout(500ms);
  const auto begin = std::chrono::steady_clock::now();
  const auto stale = call("--days 2");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 10s);
  EXPECT_EQ(stale.status, 0);
  EXPECT_EQ(lines(stale.errors), 1) << stale.errors;
  EXPECT_THAT(stale.errors, HasSubstr("2001"));
  const auto answer = Json::parse(stale.output);
  EXPECT_EQ(answer["updatedAt"], "2001-01-01T00:00:01.000Z");
  EXPECT_EQ(answer["days"].size(), 2U);
  EXPECT_EQ(call("--offline --days 2").output, stale.output);
  fs::remove(file());
  const auto none = call("");
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(none.output, "");
  EXPECT_EQ(lines(none.errors), 1) << none.errors;
}
