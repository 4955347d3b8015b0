#include <glib.h>
#include <gmock/gmock.h>
#include <time.h>

#include "desktop/command_line.hpp"
#include "desktop/placement.hpp"
#include "desktop/schedule.hpp"
#include "desktop/wall_clock_timer.hpp"
#include "desktop/widget_answer.hpp"
#include "desktop/widget_program.hpp"
#include "tests/support/environment.hpp"

using namespace desktop;

TEST(Schedule, reloadsWhenTheDateHasPassedOrTheClockWasSetBack) {
  const double now = 1e9;
  const auto schedule = rescheduled(now + 1800, now);
  EXPECT_EQ(nextChange(schedule, now), now + 1800);
  EXPECT_FALSE(isReloadDue(schedule, now + 1799));
  EXPECT_TRUE(isReloadDue(schedule, now + 1800));
  EXPECT_EQ(nextChange(schedule, now + 90'000), now + 90'000) << "after a long suspend";
  EXPECT_TRUE(isReloadDue(schedule, now - 1)) << "after the clock was set back";
}

TEST(Schedule, failuresAndAbsurdDatesWaitForTheRegularReload) {
  const double now = 1e9;
  for (const std::optional<double> date : {std::optional<double>(), std::optional(now),
                                           std::optional(now - 5), std::optional(now + 1e7)})
    EXPECT_EQ(rescheduled(date, now).reloadDate, now + 1800);
}

TEST(Schedule, aRunningProgramHasSixMinutes) {
  auto schedule = rescheduled(std::nullopt, 0);
  schedule.running = 10;
  EXPECT_EQ(nextChange(schedule, 90'000), 90'350) << "whatever the wall clock says";
  EXPECT_FALSE(isRunOverdue(schedule));
  schedule.running = 360;
  EXPECT_TRUE(isRunOverdue(schedule));
}

TEST(Schedule, readsDates) {
  EXPECT_EQ(unixSecondsFromIso("2026-05-21T10:00:00.250Z"), 1779357600.25);
  for (const char* bad : {"", "2026-05-21", "2026-05-21T10:00:00.250Zx", "tomorrow"})
    EXPECT_EQ(unixSecondsFromIso(bad), std::nullopt) << bad;
}

TEST(WallClock, noticesThatTheClockWasSet) {
  GMainLoop* loop = g_main_loop_new(nullptr, FALSE);
  int fired = 0;
  WallClockTimer timer([&] {
    ++fired;
    g_main_loop_quit(loop);
  });
  timer.set(wallClock() + 0.05);
  g_main_loop_run(loop);
  EXPECT_EQ(fired, 1);
  timer.set(wallClock() + 1000);
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  if (clock_settime(CLOCK_REALTIME, &now) != 0) {
    g_main_loop_unref(loop);
    GTEST_SKIP() << "the clock cannot be set here";
  }
  g_main_loop_run(loop);
  EXPECT_EQ(fired, 2);
  g_main_loop_unref(loop);
}

using PlacementTest = tests::Environment;

TEST_F(PlacementTest, isKeptAndSetAsideWhenDamaged) {
  const auto file = folder_ / "config/velmora-desktop/placement.json";
  EXPECT_EQ(loadPlacement(file), Placement{});
  const Placement placement{"large", Corner::bottomLeft, 7, "DP-1", Point{-3, 40}, 2};
  EXPECT_TRUE(savePlacement(placement, file));
  EXPECT_EQ(loadPlacement(file), placement);
  for (const char* damaged : {"", "[]", R"({"family":"huge","corner":"top-left","margin":1})",
                              R"({"family":"small","corner":"x","margin":1})",
                              R"({"family":"small","corner":"top-left","margin":1e300})"}) {
    tests::writeFile(file, damaged);
    EXPECT_EQ(loadPlacement(file), Placement{});
    EXPECT_EQ(tests::readFile(file.string() + ".damaged"), damaged);
  }
}

TEST(Placement, staysInsideTheWorkArea) {
  const Area area{100, 20, 1000, 700};
  Placement placement{.family = "medium", .corner = Corner::bottomRight, .margin = 24};
  EXPECT_EQ(position(placement, area), (Point{100 + 1000 - 364 - 24, 20 + 700 - 170 - 24}));
  placement.moved = Point{5000, -50};
  EXPECT_EQ(position(placement, area), (Point{100 + 636, 20}));
  EXPECT_EQ(position(placement, {0, 0, 200, 100}), (Point{0, 0}));
}

TEST(CommandLines, changeOnlyWhatTheyName) {
  CommandLine line;
  EXPECT_FALSE(parseCommandLine({"--family", "large", "--widget", "w"}, "/home/x", line));
  EXPECT_EQ(line.widget, "/home/x/w");
  const Placement before{.corner = Corner::topLeft, .moved = Point{1, 2}};
  const auto after = applied(line, before);
  EXPECT_EQ(after.family, "large");
  EXPECT_EQ(after.moved, before.moved);
  EXPECT_FALSE(parseCommandLine({"--corner", "bottom-left"}, "/", line));
  EXPECT_EQ(applied(line, before).moved, std::nullopt);
  EXPECT_EQ(parseCommandLine({"--nothing"}, "/", line)->status, 2);
  EXPECT_EQ(parseCommandLine({"--help"}, "/", line)->status, 0);
}

TEST(Answers, areReadStrictly) {
  const auto answer = parseAnswer(
      R"({"entries":[{"accessibility":["a","b"]}],"policy":{"after":"2026-05-21T10:00:00.000Z"}})");
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->phrases, (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(answer->reloadDate, 1779357600);
  for (const char* bad : {"", "{}", R"({"entries":[]})", R"({"entries":[{}]})",
                          R"({"entries":[{"accessibility":[1]}]})"})
    EXPECT_FALSE(parseAnswer(bad)) << bad;
}

TEST_F(PlacementTest, overduePrograms) {
  const auto file = folder_ / "hang";
  tests::writeFile(file, "#!/bin/sh\nsleep 100\n");
  std::filesystem::permissions(file, std::filesystem::perms::owner_all);
  WidgetProgram program(file);
  GMainLoop* loop = g_main_loop_new(nullptr, FALSE);
  std::string failure;
  program.ask({.family = "small", .width = 170, .height = 170}, [&](RunResult result) {
    failure = result.failure;
    g_main_loop_quit(loop);
  });
  EXPECT_TRUE(program.isRunning());
  program.kill();
  g_main_loop_run(loop);
  EXPECT_EQ(failure, "it was ended by signal Killed");
  EXPECT_FALSE(program.isRunning());
  WidgetProgram missing("/nowhere");
  missing.ask({}, [&](RunResult result) {
    failure = result.failure;
    g_main_loop_quit(loop);
  });
  g_main_loop_run(loop);
  EXPECT_EQ(failure, "it could not be started");
  g_main_loop_unref(loop);
}
