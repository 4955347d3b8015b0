#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>

#include <thread>

#include "VelmoraWidget/AccountResolution.hpp"
#include "VelmoraWidget/SharedKeychain.hpp"
#include "VelmoraWidget/SnapshotCache.hpp"
#include "companion/news/choices.hpp"
#include "companion/news/memory_file.hpp"
#include "companion/news/news.hpp"
#include "companion/sign_in_error.hpp"
#include "companion/user_data.hpp"
#include "platform/foundation/http.hpp"
#include "platform/foundation/user_defaults.hpp"
#include "sandbox/server.hpp"
#include "tests/support/environment.hpp"
#include "tests/support/held_clock.hpp"
#include "tests/support/program.hpp"
#include "tests/support/replaced_constants.hpp"

using namespace companion;
using namespace std::chrono_literals;
using news::Choices;
using platform::Json;
using sandbox::Fault;
using sandbox::Step;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace fs = std::filesystem;

namespace {

constexpr double minute = 60;
constexpr double hour = 3600;

/// A signed-in user with figures of five minutes ago, and a provider with nothing to say.
class Asking : public tests::Environment {
 public:
  Asking() {
    tests::setAdSenseBaseURL(server_.baseURL());
    tests::setRevocationURL(server_.address()["revokeURL"]);
    tests::setRequestTimeout(20s);
    setenv("XDG_CONFIG_HOME", (folder_ / "config").c_str(), 1);
    writeClientFile(server_.clientFile().dump());
    storeKeychainItem(velmora::refreshTokenAccount, server_.address()["refreshToken"]);
    platform::UserDefaults::standard().setString(velmora::accountCacheKey,
                                                 "accounts/pub-9588189546311528");
    at(0);
    figuresFrom(-5 * minute);
  }

  /// Moves the clock to so many seconds after the start.
  void at(double seconds) {
    now_ = tests::instant("2026-11-23T12:00:00") + seconds;
    tests::holdClock(now_);
  }

  void figuresFrom(double secondsFromNow) {
    auto snapshot = velmora::VelmoraSnapshot::sample();
    snapshot.updatedAt = now_ + secondsFromNow;
    velmora::saveCachedSnapshot(snapshot);
  }

  /// Of one run, what is told ("+id") and what is over ("-id").
  static std::string told(bool keeps = true) {
    std::string text;
    news::tellNews(keeps, [&text](const news::News& news) {
      for (const auto& report : news.news) text += "+" + report.entry.id;
      for (const auto& id : news.over) text += "-" + id;
      return true;
    });
    return text;
  }

  /// The requests since the last call, by the ends of their paths.
  std::vector<std::string> asked() {
    std::vector<std::string> paths;
    for (const auto& request : server_.takeRequests()) {
      const auto path = request.target.substr(0, request.target.find('?'));
      paths.push_back(path.substr(path.rfind('/') + 1));
    }
    return paths;
  }

  [[nodiscard]] fs::path memory() const { return defaultsFile().parent_path() / "news.json"; }
  [[nodiscard]] fs::path choices() const { return folder_ / "config/velmora/news.json"; }

 protected:
  sandbox::Server server_{{}};
  platform::Instant now_;
};

}  // namespace

TEST_F(Asking, asksForNoticesFourTimesADay) {
  server_.setNotices({{"SEVERE", "<b>On hold</b>"}}, {{"WARNED", "a"}, {"WARNED", "b"}});
  setLanguages("pt_BR:de");
  EXPECT_THAT(told(), HasSubstr("+alert-"));
  const auto requests = server_.takeRequests();
  ASSERT_EQ(requests.size(), 3U);
  EXPECT_THAT(requests[1].target, testing::EndsWith("/alerts?languageCode=pt-BR"));
  server_.setNotices({}, {{"WARNED", "a"}});
  at(6 * hour - 1);
  figuresFrom(-1);
  EXPECT_EQ(told(), "");
  EXPECT_THAT(asked(), IsEmpty());
  at(6 * hour);
  server_.setFaults({{Step::alerts, {Fault::Kind::status, 503}}});
  EXPECT_THAT(told(), testing::MatchesRegex("-policy-.*/2-WARNED")) << "the alert is not known";
  EXPECT_THAT(asked(), ElementsAre("token", "alerts", "policyIssues"));
  at(6 * hour + 30 * minute);
  figuresFrom(-1);
  server_.setFaults({});
  EXPECT_THAT(told(), testing::MatchesRegex("-alert-.*/1"));
  EXPECT_THAT(asked(), ElementsAre("token", "alerts")) << "the one that failed";
  at(20 * hour);
  figuresFrom(-1);
  news::storeChoices({{"alert", false}, {"policy", false}});
  told();
  EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(Asking, readsEveryPageOfThePolicyIssues) {
  int page = 0;
  server_.setOverride([&page](Step step, const auto&) -> std::optional<sandbox::OverridingAnswer> {
    if (step != Step::policy) return std::nullopt;
    const auto number = std::to_string(++page);
    const std::string next = page < 3 ? R"(,"nextPageToken":"p )" + number + "\"" : "";
    return R"({"policyIssues":[{"name":")" + number + R"(","action":"WARNED"}])" + next + "}";
  });
  EXPECT_EQ(told(), "+policy-1-WARNED+policy-2-WARNED+policy-3-WARNED");
  server_.setOverride([](Step step, const auto&) -> std::optional<sandbox::OverridingAnswer> {
    if (step != Step::policy) return std::nullopt;
    return sandbox::OverridingAnswer(
        R"({"policyIssues":[{"name":"4","action":"WARNED"}],"nextPageToken":"for ever"})");
  });
  at(7 * hour);
  server_.takeRequests();
  EXPECT_EQ(told(), "+policy-4-WARNED-policy-1-WARNED-policy-2-WARNED-policy-3-WARNED");
  EXPECT_LT(asked().size(), 6U);
}

TEST_F(Asking, probesWhatMayHaveGoneWrong) {
  news::storeChoices({{"alert", false}, {"policy", false}});
  EXPECT_EQ(told(), "");
  EXPECT_THAT(asked(), IsEmpty());
  server_.endSignIns();
  at(27 * minute);
  EXPECT_EQ(told(), "+signInEnded");
  EXPECT_THAT(asked(), ElementsAre("token"));
  at(56 * minute);
  EXPECT_EQ(told(), "");
  EXPECT_THAT(asked(), IsEmpty()) << "at most once in half an hour";
  at(57 * minute);
  EXPECT_EQ(told(), "");
  EXPECT_THAT(asked(), ElementsAre("token"));
  at(58 * minute);
  figuresFrom(0);
  EXPECT_EQ(told(), "-signInEnded");
  EXPECT_EQ(told(), "");
}

TEST_F(Asking, saysWhyThereAreNoNewFigures) {
  news::storeChoices({{"alert", false}, {"policy", false}});
  told();
  server_.setFaults({*sandbox::parseFault("report=service-disabled")});
  at(84 * minute);
  EXPECT_EQ(told(), "");
  EXPECT_THAT(asked(), ElementsAre("token"));
  at(115 * minute);
  EXPECT_EQ(told(), "+refreshFails");
  EXPECT_THAT(asked(), ElementsAre("token", "reports:generate"));
  server_.setFaults({});
  at(150 * minute);
  EXPECT_EQ(told(), "") << "over only once there are figures";
  at(151 * minute);
  figuresFrom(0);
  EXPECT_EQ(told(), "-refreshFails");
  // A network that is away says nothing.
  tests::setAdSenseBaseURL("http://127.0.0.1:9/v2");
  at(300 * minute);
  EXPECT_EQ(told(), "");
}

TEST_F(Asking, withoutFiguresWaitsAsLong) {
  news::storeChoices({{"alert", false}, {"policy", false}});
  forgetFigures();
  server_.setFaults({{Step::accounts, {Fault::Kind::status, 500}}});
  EXPECT_EQ(told(), "");
  EXPECT_THAT(asked(), ElementsAre("token"));
  at(91 * minute);
  EXPECT_EQ(told(), "+refreshFails");
  EXPECT_THAT(asked(), ElementsAre("token", "accounts"));
}

TEST_F(Asking, endsInTimeAndCountsWhatWasKilled) {
  tests::setRequestTimeout(500ms);
  server_.setFaults({{Step::token, {Fault::Kind::slow, 0, ""}}});
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(told(), "");
  EXPECT_LT(std::chrono::steady_clock::now() - start, 15s) << "it would answer after 90";
  EXPECT_THAT(asked(), ElementsAre("token"));
  EXPECT_EQ(told(), "");
  EXPECT_THAT(asked(), IsEmpty()) << "a failure is asked again in half an hour";
}

TEST_F(Asking, keepsNothingWhenPeekingNorWhenNothingWasTold) {
  server_.setNotices({{"SEVERE", "x"}}, {});
  EXPECT_THAT(told(false), HasSubstr("+alert"));
  EXPECT_FALSE(fs::exists(memory()));
  EXPECT_FALSE(news::tellNews(true, [](const auto&) { return false; }));
  asked();
  EXPECT_THAT(told(), HasSubstr("+alert")) << "nobody was told";
  EXPECT_THAT(asked(), IsEmpty()) << "but the provider was asked";
  EXPECT_EQ(told(), "");
}

TEST_F(Asking, theFirstRunIsQuietAboutWhatIsOld) {
  auto snapshot = velmora::VelmoraSnapshot::sample();
  snapshot.today = snapshot.monthToDate = 1000;
  snapshot.updatedAt = now_;
  velmora::saveCachedSnapshot(snapshot);
  EXPECT_FALSE(news::tellNews(true, [](const auto&) { return false; }));
  EXPECT_EQ(told(), "");
  snapshot.lastPaymentDateLabel = "Dec 21, 2026";
  velmora::saveCachedSnapshot(snapshot);
  storeKeychainItem(velmora::objectivesAccount, R"({"daily":20,"monthly":300})");
  EXPECT_EQ(told(), "+dailyGoal-2026-11-23-20+payment-Dec 21, 2026");
  setLanguages("de");
  snapshot.lastPaymentDateLabel = "21.12.2026";
  velmora::saveCachedSnapshot(snapshot);
  EXPECT_EQ(told(), "") << "the same payment in another language";
  at(24 * hour);
  EXPECT_EQ(told(), "-dailyGoal-2026-11-23-20");
  signOut();
  EXPECT_FALSE(fs::exists(memory()));
  server_.takeRequests();
  EXPECT_EQ(told(), "");
  EXPECT_THAT(asked(), IsEmpty()) << "nobody is signed in";
  EXPECT_FALSE(fs::exists(memory()));
}

TEST_F(Asking, survivesAClockThatIsSetBack) {
  news::storeChoices({{"alert", false}, {"policy", false}});
  at(24 * hour);
  figuresFrom(-1);
  server_.endSignIns();
  at(0);
  EXPECT_EQ(told(), "") << "the figures count as new";
  at(32 * minute);
  EXPECT_EQ(told(), "+signInEnded") << "but not for a whole day";
  at(-24 * hour);
  EXPECT_EQ(told(), "");
  at(-24 * hour + 32 * minute);
  asked();
  EXPECT_EQ(told(), "");
  EXPECT_THAT(asked(), ElementsAre("token"));
}

TEST_F(Asking, tellsNothingThatCannotBeKept) {
  server_.setNotices({{"SEVERE", "x"}}, {});
  fs::create_directories(memory());  // no file can take its place
  EXPECT_THROW(told(), SignInError);
  EXPECT_THAT(asked(), IsEmpty()) << "or it would be asked again at each run";
  fs::remove_all(memory());
  EXPECT_THAT(told(), HasSubstr("+alert"));
  EXPECT_EQ(fs::status(memory()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  for (const char* damage : {"", "{", "[]", R"({"version":1})", "\xff\xfe"}) {
    tests::writeFile(memory(), damage);
    EXPECT_THAT(told(), HasSubstr("+alert")) << damage;
  }
  storeKeychainItem(velmora::refreshTokenAccount, "of somebody else");
  asked();
  EXPECT_EQ(told(), "+signInEnded") << "what was answered was for the one before";
  EXPECT_THAT(asked(), ElementsAre("token"));
}

TEST_F(Asking, choicesAreNeverLost) {
  EXPECT_THAT(news::newsKinds(), testing::Each(testing::Field(&news::KindOfNews::isOn, true)));
  const auto mask = ::umask(0);
  std::vector<std::thread> writers;
  for (const auto& kind : news::newsKinds())
    writers.emplace_back([id = kind.id] { news::storeChoices({{id, false}}); });
  for (auto& writer : writers) writer.join();
  ::umask(mask);
  EXPECT_THAT(news::newsKinds(), testing::Each(testing::Field(&news::KindOfNews::isOn, false)));
  EXPECT_EQ(fs::status(choices()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  for (const char* damage : {"", "[]", R"({"kinds":5})", R"({"kinds":{"drop":"no"}})", "\xff"}) {
    tests::writeFile(choices(), damage);
    EXPECT_TRUE(news::isOn(news::loadChoices(), "drop")) << damage;
  }
}

TEST_F(Asking, theProgramPrintsAndFails) {
  const auto call = [](const std::string& words) {
    return tests::run({"/bin/sh", "-c", std::string(VELMORA) + " " + words});
  };
  setenv("XDG_DATA_HOME", (folder_ / "data").c_str(), 1);
  fs::create_directories(folder_ / "data/velmora-widget");
  tests::writeFile(folder_ / "data/velmora-widget/client_secret.json", server_.clientFile().dump());
  server_.setNotices({{"WARNING", "<b>One</b> thing"}}, {});
  news::storeChoices({{"policy", false}});
  for (const char* sink : {">/dev/full", ">&-"}) {
    const auto full = call(std::string("news ") + sink);
    EXPECT_EQ(full.status, 1) << sink;
    EXPECT_EQ(full.errors, "velmora: cannot write to standard output\n");
  }
  const auto answer = Json::parse(call("news").output);
  EXPECT_EQ(answer["news"][0], (Json{{"id", "alert-accounts/pub-9588189546311528/alerts/1"},
                                     {"kind", "alert"},
                                     {"title", "A message from AdSense"},
                                     {"body", "One thing"},
                                     {"urgency", "normal"}}));
  EXPECT_EQ(call("news").output, "{\"news\":[],\"over\":[]}\n");
  const auto kinds = Json::parse(call("news --off drop --off payment --on policy").output)["kinds"];
  EXPECT_EQ(kinds.size(), 9U);
  EXPECT_EQ(kinds["drop"], false);
  EXPECT_EQ(kinds["policy"], true);
  for (const char* wrong : {"news --on nothing", "news --off", "news --peek --on drop",
                            "news --on drop --off drop", "news drop"}) {
    const auto result = call(wrong);
    EXPECT_EQ(result.status, 2) << wrong;
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
  }
  setenv("XDG_STATE_HOME", "/proc/nowhere", 1);
  EXPECT_EQ(call("news").status, 1);
  setenv("XDG_CONFIG_HOME", "/proc/nowhere", 1);
  const auto unwritable = call("news --off drop");
  EXPECT_EQ(unwritable.status, 1);
  EXPECT_EQ(std::count(unwritable.errors.begin(), unwritable.errors.end(), '\n'), 1);
}
