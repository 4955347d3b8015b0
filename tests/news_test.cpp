#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "companion/news/digest.hpp"
#include "companion/news/intervals.hpp"
#include "companion/news/memory.hpp"
#include "companion/news/plain_text.hpp"
#include "companion/news/questions.hpp"
#include "tests/support/environment.hpp"
#include "tests/support/held_clock.hpp"

using namespace companion;
using namespace companion::news;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using velmora::VelmoraSnapshot;

namespace {

const auto now = tests::instant("2026-11-23T12:00:00");

/// A user with fresh figures and nothing to be told.
Facts calm() {
  Facts facts;
  facts.now = now;
  facts.figures = VelmoraSnapshot::sample();
  facts.figures->yesterdayPrevWeek = facts.figures->yesterday;
  facts.figures->lastPaymentDateLabel.reset();
  facts.figuresFrom = now + -60;
  facts.goals = velmora::Objectives{15, 400.5};
  return facts;
}

Answer failed(FailureKind kind, double secondsAgo = 0) {
  return {now + -secondsAgo, Failure{.kind = kind, .title = "t", .advice = "a"}};
}

Kind kindNamed(const std::string& id) {
  for (const auto& kind : kinds())
    if (kind.id == id) return kind;
  throw std::runtime_error(id);
}

std::vector<std::string> idsOf(const std::string& kind, const Facts& facts) {
  std::vector<std::string> ids;
  for (const auto& entry : kindNamed(kind).find(facts)) ids.push_back(entry.id);
  return ids;
}

Entry only(const std::string& kind, const Facts& facts) {
  const auto entries = kindNamed(kind).find(facts);
  EXPECT_EQ(entries.size(), 1U) << kind;
  return entries.empty() ? Entry{} : entries.front();
}

Standing standingOf(const std::string& kind, const std::string& id, const Facts& facts,
                    double toldSecondsAgo = 3600) {
  return kindNamed(kind).standing({id, kind, now + -toldSecondsAgo}, facts);
}

class KindsOfNews : public tests::Environment {};

}  // namespace

TEST_F(KindsOfNews, areQuietInCalmTimes) {
  for (const auto& kind : kinds()) {
    EXPECT_THAT(kind.find(calm()), IsEmpty()) << kind.id;
    EXPECT_FALSE(kind.title.empty() || kind.explanation.empty()) << kind.id;
  }
}

TEST_F(KindsOfNews, theSignInAndTheClient) {
  auto facts = calm();
  facts.token = failed(FailureKind::signInEnded);
  const auto ended = only("signInEnded", facts);
  EXPECT_EQ(ended.urgency, Urgency::critical);
  EXPECT_THAT(ended.body, HasSubstr("published"));
  EXPECT_EQ(standingOf("signInEnded", "signInEnded", facts, 30), Standing::holds);
  EXPECT_EQ(standingOf("signInEnded", "signInEnded", facts), Standing::over) << "newer figures";
  facts.token->at = facts.figuresFrom + -1;
  EXPECT_THAT(idsOf("signInEnded", facts), IsEmpty()) << "disproved since";
  facts.token = failed(FailureKind::clientRefused);
  EXPECT_EQ(only("clientRefused", facts).urgency, Urgency::critical);
  EXPECT_THAT(idsOf("signInEnded", facts), IsEmpty());
  facts.token.reset();
  facts.clientFile = Failure{.kind = FailureKind::clientRefused, .title = "gone"};
  EXPECT_EQ(only("clientRefused", facts).title, "gone");
}

TEST_F(KindsOfNews, refreshesThatFail) {
  auto facts = calm();
  facts.report = failed(FailureKind::apiNotEnabled);
  facts.report->failure->page = "https://console.cloud.google.com/x";
  EXPECT_THAT(idsOf("refreshFails", facts), IsEmpty()) << "not for long enough";
  facts.figuresFrom = now + -(threeIntervals + 1);
  EXPECT_EQ(only("refreshFails", facts).body, "a https://console.cloud.google.com/x");
  facts.figures.reset();
  EXPECT_EQ(only("refreshFails", facts).urgency, Urgency::normal) << "without figures as well";
  for (const auto kind :
       {FailureKind::serviceProblem, FailureKind::tooManyRequests, FailureKind::foreignPage,
        FailureKind::noAnswer, FailureKind::noAccount, FailureKind::signInEnded}) {
    facts.report = failed(kind);
    EXPECT_THAT(idsOf("refreshFails", facts), ElementsAre("refreshFails")) << nameOf(kind);
  }
  facts.report = failed(FailureKind::noNetwork);
  EXPECT_THAT(idsOf("refreshFails", facts), IsEmpty()) << "nobody was reached";
  facts.report = failed(FailureKind::forbidden, 600);
  facts.token = failed(FailureKind::signInEnded);
  EXPECT_THAT(idsOf("refreshFails", facts), IsEmpty()) << "another kind says it";
  facts.token = failed(FailureKind::serviceProblem);
  EXPECT_THAT(idsOf("refreshFails", facts), ElementsAre("refreshFails"));
  facts.token = Answer{now, std::nullopt};
  facts.report = Answer{now, std::nullopt};
  EXPECT_THAT(idsOf("refreshFails", facts), IsEmpty()) << "figures can be had";
}

TEST_F(KindsOfNews, goals) {
  auto facts = calm();
  facts.figures->today = 15;
  facts.figures->monthToDate = 400.5;
  EXPECT_EQ(only("dailyGoal", facts).id, "dailyGoal-2026-11-23-15");
  EXPECT_EQ(only("dailyGoal", facts).body, "Earned so far: €15.00. The goal: €15.00.");
  EXPECT_EQ(only("monthlyGoal", facts).id, "monthlyGoal-2026-11-400.5");
  facts.figuresFrom = tests::instant("2026-11-22T23:59:59");
  EXPECT_THAT(idsOf("dailyGoal", facts), IsEmpty()) << "figures of yesterday";
  EXPECT_FALSE(idsOf("monthlyGoal", facts).empty());
  facts.figuresFrom = tests::instant("2026-10-31T23:59:59");
  EXPECT_THAT(idsOf("monthlyGoal", facts), IsEmpty());
  facts.figuresFrom = now;
  facts.goals.reset();
  EXPECT_THAT(idsOf("dailyGoal", facts), IsEmpty()) << "not known";
  facts.goals = velmora::Objectives{0, -1};
  EXPECT_THAT(idsOf("monthlyGoal", facts), IsEmpty());
  EXPECT_THAT(idsOf("dailyGoal", facts), IsEmpty());
  EXPECT_EQ(standingOf("dailyGoal", "dailyGoal-2026-11-23-99", facts), Standing::holds);
  EXPECT_EQ(standingOf("dailyGoal", "dailyGoal-2026-11-22-15", facts), Standing::over);
  EXPECT_EQ(standingOf("monthlyGoal", "monthlyGoal-2026-11-1", facts), Standing::holds);
  EXPECT_EQ(standingOf("monthlyGoal", "monthlyGoal-2026-10-1", facts), Standing::over);
}

TEST_F(KindsOfNews, dropsAndPayments) {
  auto facts = calm();
  facts.figures->yesterday = 6;
  facts.figures->yesterdayPrevWeek = 10;
  facts.figures->perfPrevWeek.impressions = 1000;
  EXPECT_EQ(only("drop", facts).id, "drop-2026-11-22");
  EXPECT_THAT(only("drop", facts).body, HasSubstr("€6.00"));
  facts.figures->yesterday = 6.01;
  EXPECT_THAT(idsOf("drop", facts), IsEmpty());
  facts.figures->yesterday = 0;
  facts.figures->perfPrevWeek.impressions = 999;
  EXPECT_THAT(idsOf("drop", facts), IsEmpty());
  facts.figures->perfPrevWeek.impressions = 1000;
  facts.figures->yesterdayPrevWeek = 0;
  EXPECT_THAT(idsOf("drop", facts), IsEmpty()) << "from nothing nothing drops";
  EXPECT_EQ(standingOf("drop", "drop-2026-11-22", facts), Standing::holds);
  EXPECT_EQ(standingOf("drop", "drop-2026-11-21", facts), Standing::over);

  facts.figures->lastPaymentDateLabel = "Nov 21, 2026";
  facts.figures->lastPaymentAmount = "€1.00";
  EXPECT_EQ(only("payment", facts).id, "payment-Nov 21, 2026");
  EXPECT_EQ(only("payment", facts).body, "AdSense paid €1.00 on Nov 21, 2026.");
  EXPECT_EQ(standingOf("payment", "payment-Oct 21, 2026", facts), Standing::forgotten);
  facts.figures->lastPaymentDateLabel.reset();
  EXPECT_EQ(standingOf("payment", "payment-Oct 21, 2026", facts), Standing::holds);
}

TEST_F(KindsOfNews, whatTheServiceSays) {
  auto facts = calm();
  facts.alerts = {{"a/1", "INFO", "x"}, {"a/2", "WARNING", "y"}, {"a/3", "SEVERE", "z"}};
  EXPECT_THAT(idsOf("alert", facts), ElementsAre("alert-a/2", "alert-a/3"));
  EXPECT_EQ(kindNamed("alert").find(facts)[1].urgency, Urgency::critical);
  EXPECT_EQ(standingOf("alert", "alert-a/1", facts), Standing::holds) << "it is still listed";
  EXPECT_EQ(standingOf("alert", "alert-a/9", facts), Standing::over);
  facts.alerts.reset();
  EXPECT_EQ(standingOf("alert", "alert-a/9", facts), Standing::holds) << "nobody was asked";

  using Date = platform::DateComponents;
  facts.policyIssues = {{"p/1", "WARNED", "a.example", Date{2026, 11, 1}, Date{2026, 12, 1}},
                        {"p/2", "AD_SERVING_DISABLED", "b.example", Date{2026, 11, 1}, {}},
                        {"p/3", "SOMETHING_LATER", "c.example", {}, {}}};
  const auto entries = kindNamed("policy").find(facts);
  EXPECT_EQ(entries[0].id, "policy-p/1-WARNED");
  EXPECT_EQ(entries[0].body, "a.example, from Dec 1, 2026 on");
  EXPECT_EQ(entries[0].urgency, Urgency::normal);
  EXPECT_EQ(entries[1].body, "b.example, since Nov 1, 2026");
  EXPECT_EQ(entries[1].urgency, Urgency::critical);
  EXPECT_EQ(entries[2].body, "c.example");
  EXPECT_EQ(standingOf("policy", "policy-p/1-WARNED", facts), Standing::holds);
  EXPECT_EQ(standingOf("policy", "policy-p/1-AD_SERVING_DISABLED", facts), Standing::over);
}

TEST_F(KindsOfNews, areToldOnceAndAnewWhenTheyComeBack) {
  const auto tell = [](const Facts& facts, std::vector<Told>& told, bool isQuiet = false) {
    const auto result = digest(kinds(), facts, told, [&](const Kind&) { return isQuiet; });
    told = result.told;
    std::string text;
    for (const auto& report : result.news) text += "+" + report.entry.id;
    for (const auto& id : result.over) text += "-" + id;
    return text;
  };
  std::vector<Told> told{{"x", "a kind of tomorrow", now}};
  auto facts = calm();
  facts.alerts = {{"1", "SEVERE", "x"}, {"1", "SEVERE", "twice"}};
  EXPECT_EQ(tell(facts, told), "+alert-1");
  EXPECT_EQ(tell(facts, told), "");
  facts.alerts->clear();
  EXPECT_EQ(tell(facts, told), "-alert-1");
  EXPECT_EQ(tell(facts, told), "");
  facts.alerts = {{"1", "SEVERE", "x"}};
  EXPECT_EQ(tell(facts, told, true), "") << "it only counts as told";
  EXPECT_EQ(tell(facts, told), "");
  facts.alerts->clear();
  EXPECT_EQ(tell(facts, told), "") << "and nobody knows that it is over";
  EXPECT_EQ(told.size(), 1U) << "what a later version told stays";

  facts.token = failed(FailureKind::signInEnded);
  EXPECT_EQ(tell(facts, told), "+signInEnded");
  facts.now = facts.figuresFrom = now + 3600;
  facts.token = Answer{now + 7200, failed(FailureKind::signInEnded).failure};
  EXPECT_EQ(tell(facts, told), "+signInEnded") << "over and back again is news alone";

  facts.alerts.emplace();
  for (int i = 0; i < 30; ++i) facts.alerts->push_back({std::to_string(i), "SEVERE", "x"});
  tell(facts, told);
  EXPECT_EQ(tell(facts, told), "+alert-25+alert-26+alert-27+alert-28+alert-29");
}

TEST_F(KindsOfNews, askWhenItCanMatter) {
  Memory memory;
  auto facts = calm();
  memory.alertsAsked = memory.policyAsked = Asked{now, true};
  const auto due = [&](const Choices& choices = {}) {
    const auto questions = dueQuestions(facts, memory, choices);
    return std::string(questions.token ? "t" : "") + (questions.report ? "r" : "") +
           (questions.alerts ? "a" : "") + (questions.policyIssues ? "p" : "");
  };
  EXPECT_EQ(due(), "");
  memory.alertsAsked->at = now + -betweenNotices;
  memory.policyAsked = Asked{now + -betweenProbes, false};
  EXPECT_EQ(due(), "ap");
  EXPECT_EQ(due({{"alert", false}, {"policy", false}}), "");
  memory.policyAsked->at = memory.alertsAsked->at = now + -(betweenProbes - 1);
  EXPECT_EQ(due(), "");
  facts.figuresFrom = now + -(oneInterval + 1);
  EXPECT_EQ(due(), "t");
  EXPECT_EQ(due({{"signInEnded", false}, {"clientRefused", false}, {"refreshFails", false}}), "");
  facts.figuresFrom = now + -(threeIntervals + 1);
  EXPECT_EQ(due(), "tr");
  EXPECT_EQ(due({{"refreshFails", false}}), "t");
  memory.tokenAsked = memory.reportAsked = Asked{now + -(betweenProbes - 1), true};
  EXPECT_EQ(due(), "");
  memory.tokenAsked.reset();
  facts.figures.reset();
  facts.figuresFrom = now;
  EXPECT_EQ(due(), "t") << "there are no figures";
  facts.clientFile.emplace();
  EXPECT_EQ(due(), "") << "there is nothing to ask with";
}

TEST_F(KindsOfNews, areRememberedWhole) {
  Memory memory;
  memory.isNew = false;
  memory.told = {{"a\n\"", "alert", now, true}, {"b", "drop", now + 86400}};
  memory.language = "de";
  memory.identity = "who";
  memory.tokenAsked = Asked{now, true};
  memory.token = failed(FailureKind::apiNotEnabled);
  memory.token->failure->page = "p";
  memory.alerts = {{"n", "SEVERE", "m"}};
  memory.policyIssues = {{"n", "WARNED", "s", platform::DateComponents{2026, 1, 2}, {}}};
  memory.futureFigures = now + 99;
  const auto text = encodeMemory(memory);
  const auto read = decodeMemory(text, now);
  EXPECT_FALSE(read.isNew);
  EXPECT_EQ(read.told[0], memory.told[0]);
  EXPECT_EQ(read.told[1].at, now) << "the clock was set back";
  EXPECT_EQ(read.futureFigures, memory.futureFigures);
  EXPECT_EQ(encodeMemory(decodeMemory(text, now + 86400)), text);
  EXPECT_TRUE(read.token->failure->kind == FailureKind::apiNotEnabled);
  for (std::string broken :
       {"", "{}", "[]", "5", R"({"version":2})", R"({"version":1,"told":[5]})", "\xff"})
    EXPECT_TRUE(decodeMemory(broken, now).isNew) << broken;
  for (std::size_t size = 0; size < text.size(); size += 7)
    EXPECT_TRUE(decodeMemory(text.substr(0, size), now).isNew);
  auto other = read;
  keepOnlyFor(other, "somebody else");
  EXPECT_FALSE(other.token || other.alerts || other.tokenAsked);
  EXPECT_EQ(other.told.size(), 2U);
}

TEST(PlainText, hasTheWordsAlone) {
  const std::pair<const char*, const char*> texts[] = {
      {"Your payments are <b>on hold</b>.", "Your payments are on hold."},
      {"See <a href=\"https://x.example/?a=1&amp;b=2\">your\n account</a>&nbsp;now",
       "See your account now"},
      {"a<br>b<p>c</p><ul><li>d<li>e</ul>", "a b c d e"},
      {"M&uuml;ller &amp; S&ouml;hne &lt;3 &#8364;5 &#x20AC;6", "Müller & Söhne <3 €5 €6"},
      {"x<script>alert(1)</script><style>b{}</style>y<!-- z -->", "x y"},
      {"5 < 6 & 7 > 3", "5 < 6 & 7 > 3"},
      {"plain", "plain"},
      {"", ""},
      {"<b", ""},
      {"a\x1b[31m\tb\xff", "a[31m b\xef\xbf\xbd"}};
  for (const auto& [html, words] : texts) EXPECT_EQ(plainText(html), words) << html;
  EXPECT_LT(plainText(std::string(1'000'000, 'x')).size(), 2000U);
  std::string deep;
  for (int i = 0; i < 10'000; ++i) deep += "<div>";
  EXPECT_NO_THROW(plainText(deep + "x"));
}
