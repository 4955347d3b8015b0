#include <gmock/gmock.h>

#include <cmath>

#include "companion/window/figures.hpp"
#include "companion/window/model.hpp"
#include "companion/window/placement.hpp"
#include "platform/foundation/clock.hpp"
#include "platform/foundation/formatting.hpp"
#include "tests/support/environment.hpp"

using namespace companion::window;
using companion::RefreshFailure;
using velmora::VelmoraSnapshot;

class WindowModel : public tests::Environment {};

TEST_F(WindowModel, choosesThePage) {
  State state;
  EXPECT_EQ(pageFor(state), Page::loading);
  state.isLoaded = true;
  EXPECT_EQ(pageFor(state), Page::welcome);
  state.isKeyringLocked = true;
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
}

TEST_F(WindowModel, measuresGoals) {
  EXPECT_EQ(progressText(9.21, 15, "EUR"), "€9.21 so far, 61 % of the goal");
  EXPECT_EQ(progressText(30, 15, "JPY"), "¥30 so far, 200 % of the goal");
  EXPECT_EQ(progressText(5, 0, "EUR"), "€5.00 so far, 0 % of the goal");
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

TEST_F(WindowModel, saysWhatHelps) {
  using Case = RefreshFailure::Case;
  EXPECT_TRUE(noticeFor({Case::signedOut, "x"}).offersSignIn);
  for (const auto kind : {Case::unreachable, Case::forbidden, Case::tooMany, Case::other})
    EXPECT_FALSE(noticeFor({kind, "x"}).offersSignIn);
  EXPECT_EQ(noticeFor({Case::other, "a\nb"}).advice, "a b");
  State state;
  state.status.account = "accounts/pub-1";
  EXPECT_EQ(accountText(state), "pub-1");
  state.accountName = "Example";
  EXPECT_EQ(accountText(state), "Example");
}

TEST_F(WindowModel, showsEveryFigure) {
  auto snapshot = VelmoraSnapshot::sample();
  snapshot.yesterdayPrevWeek = 0;
  snapshot.balance.reset();
  const auto groups = figureGroups(snapshot);
  ASSERT_EQ(groups.size(), 3);
  const auto& yesterday = groups[0].figures[1];
  EXPECT_EQ(yesterday.value, "€11.49");
  EXPECT_FALSE(yesterday.change) << "nothing to compare with";
  const auto& week = groups[0].figures[2];
  EXPECT_EQ(week.note, "The 7 days before: €112.58");
  EXPECT_EQ(week.change, "-15 %");
  EXPECT_FALSE(week.isUp);
  EXPECT_EQ(week.spokenChange, "down 15 %");
  EXPECT_EQ(groups[1].figures[0].value, "—");
  EXPECT_EQ(groups[1].figures[1].note, "21 mai 2026");
  EXPECT_EQ(groups[2].figures[0].note, "A week before: 3.67 k");
}

TEST_F(WindowModel, readsAndChangesThePlacement) {
  const auto kept = readPlacement(
      R"({"family":"large","corner":"nowhere","margin":9,"monitor":"DP-1","moved":{"x":1,"y":2}})");
  EXPECT_EQ(kept, (Placement{"large", "top-right", "DP-1", true}));
  for (const auto* broken : {"", "{", "[]", R"({"family":5})"})
    EXPECT_EQ(readPlacement(broken), Placement{});
  auto wanted = kept;
  wanted.family = "small";
  EXPECT_THAT(optionsFor(wanted, kept), testing::ElementsAre("--family", "small"))
      << "what was dragged stays there";
  wanted.isMoved = false;
  wanted.monitor = "";
  EXPECT_THAT(optionsFor(wanted, kept),
              testing::ElementsAre("--family", "small", "--monitor", "", "--corner", "top-right"));
}

TEST_F(WindowModel, readsAmountsAsTheyAreTyped) {
  using platform::decimalFromText;
  EXPECT_EQ(decimalFromText("1.234,5", "de"), 1234.5);
  EXPECT_EQ(decimalFromText(" 12,5 ", "fr"), 12.5);
  EXPECT_EQ(decimalFromText("12.5", "de"), 12.5) << "the point does not group here";
  EXPECT_EQ(decimalFromText("١٥٫٢٥", "ar_EG"), 15.25);
  for (const auto* text : {"", " ", "x", "1x", "1e999", "nan", "inf"})
    EXPECT_EQ(decimalFromText(text, "en"), std::nullopt) << text;
}
