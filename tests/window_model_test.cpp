#include <gmock/gmock.h>

#include <cmath>

#include "companion/window/figures.hpp"
#include "companion/window/goal_text.hpp"
#include "companion/window/model.hpp"
#include "platform/foundation/clock.hpp"
#include "platform/foundation/formatting.hpp"
#include "platform/foundation/percent_text.hpp"
#include "tests/support/environment.hpp"

using namespace companion::window;
using companion::Remedy;
using velmora::VelmoraSnapshot;

class WindowModel : public tests::Environment {};

TEST_F(WindowModel, choosesThePage) {
  State state;
  EXPECT_EQ(pageFor(state), Page::loading);
  state.isLoaded = true;
  EXPECT_EQ(pageFor(state), Page::welcome);
  state.keyring = Keyring::away;
  EXPECT_EQ(pageFor(state), Page::noKeyring);
  state.keyring = Keyring::locked;
  EXPECT_EQ(pageFor(state), Page::locked);
  state.status.isSignedIn = true;
  EXPECT_EQ(pageFor(state), Page::overview);
  // A sign-in is shown wherever it began.
  for (const auto phase : {SignInPhase::preparing, SignInPhase::waiting, SignInPhase::finishing}) {
    state.signIn = phase;
    EXPECT_EQ(pageFor(state), Page::signingIn);
  }
  state.signIn = SignInPhase::failed;
  EXPECT_EQ(pageFor(state), Page::signInFailed);
  state.signIn = SignInPhase::none;
  state.isSigningOut = true;
  state.isLoaded = false;
  EXPECT_EQ(pageFor(state), Page::signingOut) << "never a page that is being taken apart";
}

TEST_F(WindowModel, measuresGoals) {
  EXPECT_EQ(progressText(9.21, 15, "EUR"), "61% of €15");
  EXPECT_EQ(progressText(30, 12.5, "EUR"), "240% of €12.50");
  EXPECT_EQ(progressText(5, 0, "EUR"), "0% of €0");
  EXPECT_DOUBLE_EQ(shareOf(3, 4), 0.75);
  for (const double goal : {0.0, -1.0, std::nan(""), HUGE_VAL})
    EXPECT_DOUBLE_EQ(shareOf(3, goal), 0);
  EXPECT_DOUBLE_EQ(shareOf(9, 4), 1);
  EXPECT_DOUBLE_EQ(shareOf(-9, 4), 0);
}

TEST_F(WindowModel, refreshesWhatIsOld) {
  State state;
  EXPECT_FALSE(wantsRefresh(state)) << "nobody is signed in";
  state.status.isSignedIn = true;
  EXPECT_TRUE(wantsRefresh(state)) << "no figures";
  state.status.snapshot = VelmoraSnapshot::sample();
  state.status.snapshot->updatedAt = platform::now() + -1700;
  EXPECT_FALSE(wantsRefresh(state));
  state.status.snapshot->updatedAt = platform::now() + -1900;
  EXPECT_TRUE(wantsRefresh(state));
  state.isRefreshing = true;
  EXPECT_FALSE(wantsRefresh(state)) << "one is under way";
}

TEST_F(WindowModel, doesNotAskAgainAtOnce) {
  State state;
  state.status.isSignedIn = true;
  for (const double ago : {0.0, 1700.0, -1700.0}) {
    state.triedAt = state.historyTriedAt = platform::now() + -ago;
    EXPECT_FALSE(wantsRefresh(state)) << "whether or not figures came of it";
    EXPECT_FALSE(wantsHistory(state));
  }
  for (const double ago : {1900.0, -1e6}) {
    state.triedAt = state.historyTriedAt = platform::now() + -ago;
    EXPECT_TRUE(wantsRefresh(state));
    EXPECT_TRUE(wantsHistory(state));
  }
  state.unstored = VelmoraSnapshot::sample();
  state.unstored->updatedAt = platform::now();
  EXPECT_FALSE(wantsRefresh(state)) << "they are new, though not stored";
}

TEST_F(WindowModel, saysWhatIsWrong) {
  State state;
  EXPECT_THAT(noticesFor(state), testing::IsEmpty());
  state.historyFailure = companion::Failure{.title = "days", .details = "HTTP 500"};
  EXPECT_THAT(noticesFor(state), testing::ElementsAre(testing::Field(&Notice::title, "days")));
  state.failure = companion::Failure{.title = "figures", .details = "HTTP 500"};
  state.message = Notice{.title = "message"};
  EXPECT_THAT(noticesFor(state), testing::ElementsAre(testing::Field(&Notice::title, "message"),
                                                      testing::Field(&Notice::title, "figures")))
      << "one reason is told once";
  state = {};
  state.unstored = VelmoraSnapshot::sample();
  EXPECT_EQ(noticesFor(state).size(), 1);
  EXPECT_EQ(figuresOf(state)->updatedAt, VelmoraSnapshot::sample().updatedAt);
}

TEST_F(WindowModel, namesTheAccount) {
  State state;
  state.status.account = "accounts/pub-1";
  EXPECT_EQ(accountText(state), "pub-1");
  state.accountName = "Example";
  EXPECT_EQ(accountText(state), "Example");
  EXPECT_EQ(accountId(state), "pub-1");
}

TEST_F(WindowModel, showsEveryFigure) {
  auto snapshot = VelmoraSnapshot::sample();
  snapshot.yesterdayPrevWeek = 0;
  snapshot.monthLastYear = snapshot.monthToDate * 1.001;
  snapshot.balance.reset();
  const auto groups = figureGroups(snapshot);
  ASSERT_EQ(groups.size(), 3);
  const auto& yesterday = groups[0].figures[0];
  EXPECT_EQ(yesterday.value, "€11.49");
  EXPECT_FALSE(yesterday.change) << "nothing to compare with";
  const auto& week = groups[0].figures[1];
  EXPECT_EQ(week.note, "The 7 days before: €112.58");
  EXPECT_EQ(week.change, "-15%");
  EXPECT_EQ(week.trend, Trend::down);
  EXPECT_EQ(week.spokenChange, "down 15 %");
  EXPECT_EQ(groups[0].figures[2].change, "0%");
  EXPECT_EQ(groups[0].figures[2].trend, Trend::level);
  EXPECT_EQ(groups[1].figures[0].value, "—");
  EXPECT_EQ(groups[1].figures[1].note, "21 mai 2026");
  EXPECT_EQ(groups[2].figures[0].note, "A week before: 3,671") << "whole, where there is room";
}

TEST_F(WindowModel, readsGoalsAsTheyAreTyped) {
  for (const auto* text : {"25", " 25 ", "€25", "25 €", "25\u00A0EUR", "eur 25", "25.00"})
    EXPECT_EQ(readGoal(text, "EUR").amount, 25) << text;
  EXPECT_EQ(readGoal("12,5", "EUR").amount, 12.5) << "no thousands are parted there";
  EXPECT_EQ(readGoal("1.234,5", "EUR").amount, 1234.5);
  EXPECT_EQ(readGoal("1,234", "EUR").amount, 1234) << "the language's own notation comes first";
  EXPECT_EQ(readGoal("12.345", "KWD").amount, 12.345);
  EXPECT_EQ(readGoal("$25", "CAD").amount, 25);
  setLanguages("de");
  EXPECT_EQ(readGoal("1.234,5", "EUR").amount, 1234.5);
  EXPECT_EQ(readGoal("1,234.5", "EUR").amount, 1234.5);
  EXPECT_EQ(readGoal("12.5 €", "EUR").amount, 12.5);
  setLanguages("ar_EG");
  EXPECT_EQ(readGoal("١٥٫٢٥", "EUR").amount, 15.25);
}

TEST_F(WindowModel, saysWhyAGoalIsNone) {
  for (const auto* text : {"", " ", "x", "€", "12,34,5", "1.2.3", "$25", "1e3", "0x10", "nan",
                           "inf", "0", "-5", "2000000000"}) {
    const auto reading = readGoal(text, "EUR");
    EXPECT_FALSE(reading.amount) << text;
    EXPECT_FALSE(reading.problem.empty()) << text;
  }
  EXPECT_EQ(readGoal("-5", "EUR").problem, "A goal is more than zero.");
}

TEST_F(WindowModel, showsGoalsAsTheyAreStored) {
  for (const double amount : {12.345, 0.1, 1e-3, 15.0, 777.0, 1234.5, 1e9}) {
    for (const auto* currency : {"EUR", "JPY", "KWD", ""})
      EXPECT_EQ(readGoal(goalText(amount, currency), currency).amount, amount) << currency;
  }
  EXPECT_EQ(goalText(12.5, "EUR"), "12.50");
  EXPECT_EQ(goalText(15, "EUR"), "15");
}
