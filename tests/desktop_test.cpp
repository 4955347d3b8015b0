#include <glib.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <time.h>

#include <cmath>
#include <cstdlib>

#include "desktop/command_line.hpp"
#include "desktop/hidden_amounts.hpp"
#include "desktop/network_watch.hpp"
#include "desktop/news.hpp"
#include "desktop/picture_folder.hpp"
#include "desktop/placement.hpp"
#include "desktop/running_host.hpp"
#include "desktop/schedule.hpp"
#include "desktop/screens/monitors.hpp"
#include "desktop/screens/picture_rows.hpp"
#include "desktop/screens/xsettings.hpp"
#include "desktop/wall_clock_timer.hpp"
#include "desktop/widget_answer.hpp"
#include "desktop/widget_program.hpp"
#include "platform/foundation/json.hpp"
#include "tests/support/environment.hpp"
#include "tests/support/waiting.hpp"

using namespace desktop;
using platform::WidgetFamily;

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

TEST(Schedule, waitsForATimelineThatIsBeingFetched) {
  auto schedule = rescheduled(std::nullopt, 0);
  schedule.isFetching = true;
  EXPECT_EQ(nextChange(schedule, 90'000), std::nullopt) << "its answer will say when to reload";
}

TEST(Schedule, isSoonerAfterWhatWasMissingHasComeOrWhileNothingIsShown) {
  const double now = 1e9;
  const auto schedule = rescheduled(std::nullopt, now);
  EXPECT_EQ(hastened(schedule, now, now + 10).reloadDate, now + 60) << "once a minute at most";
  EXPECT_EQ(hastened(schedule, now, now + 100).reloadDate, now + 100);
  EXPECT_EQ(hastened(schedule, now + 1e6, now).reloadDate, now + 60) << "the clock was set back";
  EXPECT_EQ(hastened(schedule, now, now + 5000).reloadDate, now + 1800) << "never later";
  for (const auto& [failures, interval] :
       {std::pair{1, 60}, {2, 120}, {3, 240}, {6, 1800}, {1'000'000, 1800}})
    EXPECT_EQ(retried(failures, now).reloadDate, now + interval);
}

TEST(Schedule, readsDates) {
  EXPECT_EQ(unixSecondsFromIso("2026-05-21T10:00:00.250Z"), 1779357600.25);
  for (const char* bad : {"", "2026-05-21", "2026-05-21T10:00:00.250Zx", "tomorrow"})
    EXPECT_EQ(unixSecondsFromIso(bad), std::nullopt) << bad;
}

TEST(WallClock, firesOnceWhenTheDateHasCome) {
  int fired = 0;
  WallClockTimer timer([&fired] { ++fired; });
  const auto turn = [] {
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
  };
  timer.set(wallClock() + 1000);
  turn();
  EXPECT_EQ(fired, 0);
  for (const double date : {wallClock() + 0.05, wallClock() - 1000, -1.0}) {
    fired = 0;
    timer.set(date);
    tests::waitFor("the timer", [&] {
      turn();
      return fired > 0;
    });
    turn();
    EXPECT_EQ(fired, 1) << date;
  }
}

using PlacementTest = tests::Environment;

TEST_F(PlacementTest, isKeptAndSetAsideWhenDamaged) {
  const auto file = folder_ / "config/velmora-desktop/placement.json";
  EXPECT_EQ(loadPlacement(file), Placement{});
  const Placement placement{
      WidgetFamily::systemLarge, Corner::bottomLeft, 7, "DP-1", Point{-3, 40}, Scale{150}, true};
  storePlacement(placement, file);
  EXPECT_EQ(loadPlacement(file), placement);
  storePlacement({.moved = Point{2'000'000, 0}}, file);
  EXPECT_EQ(loadPlacement(file).moved, (Point{100'000, 0})) << "what is written can be read";
  for (const char* damaged : {"", "[]", R"({"family":"huge","corner":"top-left","margin":1})",
                              R"({"family":"small","corner":"x","margin":1})",
                              R"({"family":"small","corner":"top-left","margin":1e300})"}) {
    tests::writeFile(file, damaged);
    EXPECT_EQ(loadPlacement(file), Placement{});
    EXPECT_EQ(tests::readFile(file.string() + ".damaged"), damaged);
  }
}

TEST_F(PlacementTest, whatIsNoRegularFileIsSetAside) {
  const auto file = folder_ / "placement.json";
  std::filesystem::create_directory(file);
  EXPECT_EQ(loadPlacement(file), Placement{});
  EXPECT_TRUE(std::filesystem::is_directory(file.string() + ".damaged"));
  std::filesystem::remove(file.string() + ".damaged");
  ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
  EXPECT_EQ(loadPlacement(file), Placement{}) << "and nobody waits";
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(Placement, staysInsideTheWorkArea) {
  const Area area{100, 20, 1000, 700};
  const Extent medium{364, 170};
  Placement placement{.corner = Corner::bottomRight, .margin = 24};
  EXPECT_EQ(position(placement, medium, area, {}),
            (Point{100 + 1000 - 364 - 24, 20 + 700 - 170 - 24}));
  placement.moved = Point{5000, -50};
  EXPECT_EQ(position(placement, medium, area, {}), (Point{100 + 636, 20}));
  EXPECT_EQ(position(placement, medium, {0, 0, 200, 100}, {}), (Point{0, 0}));
  placement.moved = Point{10, 20};
  EXPECT_EQ(position(placement, medium, area, Scale{180}), (Point{115, 50}));
  EXPECT_EQ(nearestCorner({110, 500}, medium, area), Corner::bottomLeft);
  EXPECT_EQ(nearestCorner({500, 30}, medium, area), Corner::topRight);
}

TEST(Scales, areDeducedFromWhatAnOutputTells) {
  const auto deduced = [](Extent pixels, Extent points, int whole) {
    return deducedScale(pixels, points, whole).per120;
  };
  EXPECT_EQ(deduced({1600, 1000}, {1280, 800}, 2), 150);
  EXPECT_EQ(deduced({1600, 1000}, {1066, 666}, 2), 180) << "cut";
  EXPECT_EQ(deduced({1600, 1000}, {1067, 667}, 2), 180) << "rounded";
  EXPECT_EQ(deduced({1600, 1000}, {1200, 750}, 2), 160);
  EXPECT_EQ(deduced({1600, 1000}, {800, 500}, 2), 240);
  EXPECT_EQ(deduced({1600, 1000}, {1600, 10}, 1), 120) << "of no scale at all";
  EXPECT_EQ(scaleText(scaleOf(1.5)), "1.5");
  EXPECT_EQ(scaleOf(std::nan("")), Scale{});
  EXPECT_EQ(scaleOf(1e9), Scale{960});
}

TEST(Monitors, areFoundByNumberNameAndPlace) {
  const std::vector<Monitor> monitors{{"DP-1", false, {0, 0, 100, 100}},
                                      {"DP-2", true, {100, 0, 100, 100}}};
  EXPECT_EQ(chosenMonitor(monitors, "DP-1"), 0);
  EXPECT_EQ(chosenMonitor(monitors, "0"), 0);
  EXPECT_EQ(chosenMonitor(monitors, ""), 1);
  EXPECT_EQ(chosenMonitor(monitors, "away"), 1);
  EXPECT_EQ(chosenMonitor({}, "0"), -1);
  EXPECT_EQ(monitorAt(monitors, {150, 50}), 1);
  EXPECT_EQ(monitorAt(monitors, {-900, 500}), 0);
}

/// A property of the settings protocol with one setting of each type, in the order of this machine.
std::vector<std::uint8_t> settingsProperty(std::int32_t dpi) {
  std::vector<std::uint8_t> property(12);
  property[8] = 3;
  const auto add = [&](std::uint8_t type, const std::string& name,
                       std::vector<std::uint8_t> value) {
    property.insert(property.end(), {type, 0, static_cast<std::uint8_t>(name.size()), 0});
    property.insert(property.end(), name.begin(), name.end());
    property.resize((property.size() + 3) / 4 * 4 + 4);
    property.insert(property.end(), value.begin(), value.end());
  };
  add(1, "Net/ThemeName", {5, 0, 0, 0, 'H', 'e', 'l', 'l', 'o', 0, 0, 0});
  add(2, "Color", {1, 2, 3, 4, 5, 6, 7, 8});
  const auto bits = static_cast<std::uint32_t>(dpi);
  add(0, "Xft/DPI",
      {static_cast<std::uint8_t>(bits), static_cast<std::uint8_t>(bits >> 8U),
       static_cast<std::uint8_t>(bits >> 16U), static_cast<std::uint8_t>(bits >> 24U)});
  return property;
}

TEST(XSettings, areReadWithinTheirBounds) {
  const auto property = settingsProperty(147456);
  EXPECT_EQ(xsettingsInteger(property, "Xft/DPI"), 147456);
  EXPECT_EQ(xsettingsInteger(property, "Color"), std::nullopt);
  for (std::size_t length = 0; length < property.size(); ++length)
    EXPECT_EQ(xsettingsInteger(std::span(property).first(length), "Xft/DPI"), std::nullopt);
  EXPECT_EQ(resourceDpi("a:\t1\nXft.dpi:\t144\nb:\t2\n"), 144);
  for (const char* none : {"", "Xft.dpi:", "Xft.dpi:\t-1", "Xft.dpi:\tx", "xXft.dpi: 144"})
    EXPECT_EQ(resourceDpi(none), std::nullopt) << none;
}

TEST(Network, isThereWithARouteToEverywhere) {
  const std::string head = "Iface\tDestination\tGateway\tFlags\tRefCnt\tUse\tMetric\tMask\n";
  const std::string local = "eth0\t000010AC\t00000000\t0001\t0\t0\t0\t00F0FFFF\t0\t0\t0\n";
  const std::string everywhere = "eth0\t00000000\t010010AC\t0003\t0\t0\t0\t00000000\t0\t0\t0\n";
  const std::string zero(32, '0');
  const auto ipv6 = [&](const std::string& flags) {
    return zero + " 00 " + zero + " 00 " + zero + " ffffffff 00000001 00000000 " + flags + " lo\n";
  };
  EXPECT_TRUE(hasDefaultRoute(head + local + everywhere, ""));
  EXPECT_TRUE(hasDefaultRoute(head, ipv6("00000003")));
  EXPECT_FALSE(hasDefaultRoute(head + local, ipv6("00200200"))) << "a refusal";
  EXPECT_FALSE(hasDefaultRoute("", ""));
}

TEST(PictureRows, areTheShapeOfWhatIsOpaque) {
  const Picture picture(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 6, 4));
  auto* pixels = reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(picture.get()));
  for (int y = 1; y < 4; ++y) {
    for (int x = y == 1 ? 2 : 1; x < 5; ++x) pixels[y * 6 + x] = 0xff000000;
  }
  pixels[6 + 1] = 0x7f000000;  // less than half
  cairo_surface_mark_dirty(picture.get());
  EXPECT_EQ(opaqueRows(picture.get()), (std::vector<Area>{{2, 1, 3, 1}, {1, 2, 4, 2}}));
}

TEST(CommandLines, changeOnlyWhatTheyName) {
  CommandLine line;
  EXPECT_FALSE(parseCommandLine({"--family", "large", "--widget", "w"}, "/home/x", line));
  EXPECT_EQ(line.widget, "/home/x/w");
  const Placement before{.corner = Corner::topLeft, .moved = Point{1, 2}};
  const auto after = applied(line, before);
  EXPECT_EQ(after.family, WidgetFamily::systemLarge);
  EXPECT_EQ(after.moved, before.moved);
  EXPECT_FALSE(parseCommandLine({"--corner", "bottom-left"}, "/", line));
  EXPECT_EQ(applied(line, before).moved, std::nullopt);
  EXPECT_FALSE(parseCommandLine({"--amounts", "hide"}, "/", line));
  EXPECT_TRUE(applied(line, before).hidesAmounts);
  EXPECT_EQ(parseCommandLine({"--nothing"}, "/", line)->status, 2);
  EXPECT_EQ(parseCommandLine({"--monitor", std::string(1000, 'x')}, "/", line)->status, 2);
  EXPECT_EQ(parseCommandLine({"--help"}, "/", line)->status, 0);
}

TEST(Answers, areReadStrictly) {
  const auto answer = parseAnswer(
      R"({"entries":[{"accessibility":["a","b"]}],"policy":{"after":"2026-05-21T10:00:00.000Z"}})");
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->phrases, (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(answer->reloadDate, 1779357600);
  EXPECT_TRUE(answer->isConnected);
  EXPECT_FALSE(parseAnswer(R"({"entries":[{"accessibility":[],"content":{"isConnected":false}}]})")
                   ->isConnected);
  for (const char* bad : {"", "{}", R"({"entries":[]})", R"({"entries":[{}]})",
                          R"({"entries":[{"accessibility":[1]}]})"})
    EXPECT_FALSE(parseAnswer(bad)) << bad;
}

class Programs : public tests::Environment {
 protected:
  Programs() : loop_(g_main_loop_new(nullptr, FALSE)) {}
  ~Programs() override { g_main_loop_unref(loop_); }

  std::filesystem::path script(const std::string& name, const std::string& shell) {
    const auto file = folder_ / name;
    tests::writeFile(file, "#!/bin/sh\n" + shell);
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    return file;
  }

  std::string failureOf(WidgetProgram& program) {
    std::string failure;
    program.ask({}, [&](const RunResult& result) {
      failure = result.failure;
      g_main_loop_quit(loop_);
    });
    g_main_loop_run(loop_);
    return failure;
  }

  GMainLoop* loop_;
};

TEST_F(Programs, failInWords) {
  WidgetProgram missing("/nowhere");
  EXPECT_EQ(failureOf(missing), "it could not be started");
  WidgetProgram pipe(script("pipe",
                            "for last; do :; done; mkfifo \"$last\"\n"
                            "echo '{\"entries\":[{\"accessibility\":[]}]}'\n"));
  EXPECT_THAT(failureOf(pipe), testing::StartsWith("it wrote no picture of the right size to "));
}

TEST(PictureFolders, areWhereThereIsRoom) {
  const std::string before = std::getenv("XDG_RUNTIME_DIR") ? std::getenv("XDG_RUNTIME_DIR") : "";
  setenv("XDG_RUNTIME_DIR", "/nowhere", 1);
  std::filesystem::path path;
  {
    const PictureFolder folder(1000);
    path = folder.path();
    EXPECT_EQ(path.parent_path(), g_get_tmp_dir());
    tests::writeFile(path / "picture.png", "x");
  }
  EXPECT_FALSE(std::filesystem::exists(path));
  try {
    const PictureFolder folder(UINTMAX_MAX);
    FAIL();
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(), testing::HasSubstr("/nowhere: No such file or directory; "));
    EXPECT_THAT(error.what(), testing::HasSubstr(": No space left on device)"));
  }
  setenv("XDG_RUNTIME_DIR", before.c_str(), 1);
}

TEST_F(Programs, thatWereKilledLeaveNoFolders) {
  setenv("XDG_RUNTIME_DIR", folder_.c_str(), 1);
  const PictureFolder used(1000);
  for (const char* name : {"velmora-desktop-abc123", "velmora-desktop-of-mine", "other"})
    std::filesystem::create_directory(folder_ / name);
  removeLeftPictureFolders();
  EXPECT_TRUE(std::filesystem::exists(used.path()));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "velmora-desktop-abc123"));
  EXPECT_TRUE(std::filesystem::exists(folder_ / "velmora-desktop-of-mine"));
}

TEST(RunningHost, isOfOneDisplay) {
  const Displays host{":0", "/run/wayland-0"};
  EXPECT_FALSE(isElsewhere(host, host, "wayland"));
  EXPECT_FALSE(isElsewhere({}, host, "wayland")) << "a terminal without a display";
  EXPECT_FALSE(isElsewhere({":0", ""}, host, "wayland")) << "by way of XWayland";
  EXPECT_TRUE(isElsewhere({":0", "/run/wayland-1"}, host, "wayland"));
  EXPECT_TRUE(isElsewhere({":1", ""}, host, "wayland"));
  EXPECT_TRUE(isElsewhere({":1", ""}, {":0", ""}, "x11"));
}

TEST(News, areReadStrictly) {
  const auto answer = parseNews(
      R"({"news":[{"id":"a","kind":"k","title":"T","body":"B","urgency":"critical"}],"over":["b"]})");
  ASSERT_EQ(answer.news.size(), 1U);
  EXPECT_EQ(answer.news[0].title + answer.news[0].body, "TB");
  EXPECT_EQ(answer.news[0].urgency, 2);
  EXPECT_THAT(answer.over, testing::ElementsAre("b"));
  for (const char* bad : {"", "{}", R"({"news":[{}],"over":[]})", R"({"news":[],"over":[1]})"})
    EXPECT_THROW(parseNews(bad), platform::JsonDecodingError) << bad;
}

TEST(HiddenAmounts, keepTheColoursAndTheShapeAlone) {
  constexpr Extent size{340, 340};
  const Picture picture(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, size.width, size.height));
  auto* pixels = reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(picture.get()));
  for (int i = 0; i < size.width * size.height; ++i)  // stripes as fine as letters
    pixels[i] = i / 6 % 2 == 0 ? 0xffffffff : 0xff000000;
  cairo_surface_mark_dirty(picture.get());
  const auto left = reduced(picture.get(), Scale{240});
  EXPECT_LE(cairo_image_surface_get_width(left.get()), 34) << "and no more is kept";
  const auto shown = blurred(left.get(), size, Scale{240});
  cairo_surface_flush(shown.get());
  const auto* seen = reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(shown.get()));
  EXPECT_EQ(seen[0], 0U) << "a round corner";
  for (int x = 40; x < 300; ++x) {
    EXPECT_EQ(seen[170 * size.width + x] >> 24U, 0xffU);
    EXPECT_NEAR(seen[170 * size.width + x] & 0xffU, 0x80, 12) << "no stripe is left";
  }
}
