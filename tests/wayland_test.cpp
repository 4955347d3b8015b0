#include <glib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <filesystem>
#include <fstream>

#include "desktop/screens/retry_floor.hpp"
#include "desktop/screens/wayland_screen.hpp"
#include "tests/support/stand_in_compositor.hpp"

// The Wayland screen against a compositor that does what no real one does at a known moment.

namespace {

using desktop::Extent;
using desktop::Placement;
using desktop::Point;
using desktop::Scale;
using tests::StandInCompositor;
using tests::StandInSurface;

constexpr Extent small{170, 170};
constexpr unsigned held = 1;
constexpr unsigned letGo = 0;

const std::map<std::string, int> usual{
    {"wl_compositor", 4},      {"wl_shm", 1},
    {"wl_output", 4},          {"wl_seat", 5},
    {"wp_viewporter", 1},      {"wp_fractional_scale_manager_v1", 1},
    {"xdg_activation_v1", 1},  {"zxdg_output_manager_v1", 3},
    {"zwlr_layer_shell_v1", 4}};

std::map<std::string, int> usualBut(const std::string& global, int version) {
  auto globals = usual;
  globals[global] = version;
  if (version == 0) globals.erase(global);
  return globals;
}

/// Runs the main loop until something is so; false when it is not within ten seconds.
bool eventually(const std::function<bool()>& isSo) {
  const auto end = g_get_monotonic_time() + gint64{10} * G_USEC_PER_SEC;
  const unsigned tick = g_timeout_add(5, [](gpointer) -> gboolean { return TRUE; }, nullptr);
  bool result = isSo();
  while (!result && g_get_monotonic_time() < end) {
    g_main_context_iteration(nullptr, TRUE);
    result = isSo();
  }
  g_source_remove(tick);
  return result;
}

class Wayland : public testing::Test {
 protected:
  void open(const std::map<std::string, int>& globals = usual) {
    compositor = std::make_unique<StandInCompositor>(globals);
    openScreen();
  }

  void openScreen() {
    desktop::ScreenEvents events;
    events.changed = [] {};
    events.lost = [this] { isLost = true; };
    events.opened = [this](const std::string&) { ++opened; };
    events.menuAsked = [this](const desktop::MenuSpot& spot) { menus.push_back(spot.at); };
    events.moved = [this](const std::string&, Point position) {
      placement.moved = position;
      screen->place(placement);
    };
    screen = desktop::openWayland(std::make_unique<desktop::WaylandDisplay>(), events, placement);
  }

  void showPicture(int scale = 1) {
    const desktop::Picture picture(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, scale * 170, scale * 170));
    screen->show(picture, {platform::WidgetFamily::systemSmall, Scale{scale * 120}});
  }

  /// Opens it, with the widget on the screen and the pointer on the widget.
  void openShown(const std::map<std::string, int>& globals = usual) {
    open(globals);
    showPicture();
    ASSERT_TRUE(eventually([&] { return shows(small); }));
    compositor->run([&] { enter(); });
  }

  bool shows(Extent pixels) {
    bool result = false;
    compositor->run([&] {
      const auto* widget = compositor->widget();
      result = widget != nullptr && compositor->sizeOf(widget->shown) == pixels;
    });
    return result;
  }

  bool standsAt(const std::vector<int>& margins) {
    bool result = false;
    compositor->run([&] {
      const auto* widget = compositor->widget();
      result = widget != nullptr && widget->margins == margins;
    });
    return result;
  }

  int count(const std::string& request) {
    int result = 0;
    compositor->run([&] { result = compositor->requests[request]; });
    return result;
  }

  // While the compositor waits.
  void enter() {
    compositor->tell("wl_pointer", "enter", compositor->serial(), compositor->widget()->surface, 0,
                     0);
  }
  void leave() {
    compositor->tell("wl_pointer", "leave", compositor->serial(), compositor->widget()->surface);
  }
  void move(int x, int y) {
    compositor->tell("wl_pointer", "motion", 0U, wl_fixed_from_int(x), wl_fixed_from_int(y));
  }
  void press(unsigned state, unsigned button = BTN_LEFT) {
    compositor->tell("wl_pointer", "button", compositor->serial(), 0U, button, state);
  }

  /// Drags the widget from its place until only its shadow is seen.
  void drag() {
    compositor->run([&] { move(20, 20), press(held), move(60, 60), move(120, 220); });
    ASSERT_TRUE(eventually([&] { return shows({1, 1}); }));
  }

  /// All that was told before has been acted on.
  void catchUp() {
    const auto before = menus.size();
    compositor->run([&] { press(letGo, BTN_RIGHT); });
    ASSERT_TRUE(eventually([&] { return menus.size() > before; }));
  }

  void expectAtRest(const std::vector<int>& margins) {
    EXPECT_TRUE(eventually([&] { return shows(small) && standsAt(margins); }));
    compositor->run([&] { enter(), move(300, 300); });
    catchUp();
    EXPECT_TRUE(shows(small) && standsAt(margins)) << "it follows a pointer without a button held";
    compositor->run([&] { EXPECT_EQ(compositor->shadow(), nullptr); });
  }

  ~Wayland() override {
    screen.reset();
    if (compositor) compositor->run([&] { EXPECT_THAT(compositor->wrongs, testing::IsEmpty()); });
  }

  Placement placement{.corner = desktop::Corner::topLeft};
  std::unique_ptr<StandInCompositor> compositor;
  std::unique_ptr<desktop::Screen> screen;
  std::vector<Point> menus;
  int opened = 0;
  bool isLost = false;
};

const std::vector<int> inCorner{24, 0, 0, 24};

TEST_F(Wayland, aDragThatIsInterruptedIsUndone) {
  openShown();
  drag();
  compositor->run([&] { leave(); });
  expectAtRest(inCorner);
  drag();
  compositor->run([&] { compositor->tell("wl_seat", "capabilities", 2U); });
  EXPECT_TRUE(eventually([&] { return count("wl_pointer.release") == 1; }));
  compositor->run([&] { compositor->tell("wl_seat", "capabilities", 3U); });
  EXPECT_TRUE(eventually([&] { return count("wl_seat.get_pointer") == 2; }));
  expectAtRest(inCorner);
  drag();
  compositor->run([&] { compositor->withdraw("wl_seat"); });
  EXPECT_TRUE(eventually([&] { return count("wl_seat.release") == 1 && shows(small); }));
  compositor->run([&] { compositor->offer("wl_seat", 5); });
  EXPECT_TRUE(eventually([&] { return count("wl_seat.get_pointer") == 3; }));
  expectAtRest(inCorner);
}

TEST_F(Wayland, aDragWhoseShadowTheCompositorRefusesIsUndone) {
  openShown();
  drag();
  compositor->run([&] { compositor->send(compositor->shadow()->layer, "closed"); });
  expectAtRest(inCorner);
  EXPECT_LE(count("zwlr_layer_shell_v1.get_layer_surface"), 3);
}

TEST_F(Wayland, aPressRightAfterADropFindsTheWidget) {
  openShown();
  drag();
  compositor->run([&] { press(letGo), press(held), press(letGo); });
  expectAtRest({224, 0, 0, 124});
  EXPECT_TRUE(eventually([&] { return opened == 1; }));
}

TEST_F(Wayland, aSurfaceThatIsTakenAwayDuringADragComesBack) {
  openShown();
  drag();
  compositor->run([&] { compositor->send(compositor->widget()->layer, "closed"); });
  EXPECT_TRUE(eventually([&] { return shows(small); }));
  expectAtRest(inCorner);
}

TEST_F(Wayland, itStaysOnAnOutputThatChanges) {
  placement.moved = Point{400, 280};
  openShown();
  EXPECT_TRUE(eventually([&] { return standsAt({280, 0, 0, 400}); }));
  compositor->run([&] {
    compositor->mode = compositor->freeArea = {480, 360};
    compositor->tellOutput();
  });
  EXPECT_TRUE(eventually([&] { return standsAt({0, 0, 0, 0}); }));
  compositor->run([&] {
    compositor->mode = compositor->freeArea = {1024, 768};
    compositor->tellOutput();
  });
  EXPECT_TRUE(eventually([&] { return standsAt({280, 0, 0, 400}); }));
}

TEST_F(Wayland, itLearnsOfPanels) {
  placement.corner = desktop::Corner::bottomLeft;
  openShown();
  compositor->run([&] {
    compositor->freeArea.height -= 100;
    compositor->configure(*compositor->probe());
    move(10, 20);
  });
  catchUp();
  EXPECT_EQ(menus.back(), (Point{24 + 10, 768 - 100 - 24 - 170 + 20}));
}

TEST_F(Wayland, surfacesThatAreRefusedAreNotMadeWithoutEnd) {
  compositor = std::make_unique<StandInCompositor>(usual);
  compositor->configured = [&](StandInSurface& surface) {
    compositor->send(surface.layer, "closed");
  };
  openScreen();
  showPicture();
  const auto end = g_get_monotonic_time() + gint64{2} * G_USEC_PER_SEC;
  eventually([&] { return g_get_monotonic_time() > end; });
  EXPECT_LE(count("wl_compositor.create_surface"), 6);
  compositor->run([&] { compositor->configured = [](StandInSurface&) {}; });
  EXPECT_TRUE(eventually([&] { return shows(small); }));
}

TEST(RetryFloors, growFromASecondToAMinute) {
  std::vector<unsigned> delays;
  for (int failures = 0; failures < 9; ++failures) delays.push_back(desktop::retryDelay(failures));
  EXPECT_THAT(delays, testing::ElementsAre(0, 1, 2, 4, 8, 16, 32, 60, 60));
}

TEST_F(Wayland, scalesThatNoPictureCanHaveAreBroughtIntoRange) {
  openShown();
  const auto becomes = [&](unsigned told, int expected) {
    compositor->run([&] { compositor->tell("wp_fractional_scale_v1", "preferred_scale", told); });
    return eventually([&] { return screen->scale() == Scale{expected}; });
  };
  EXPECT_TRUE(becomes(180, 180));
  EXPECT_TRUE(becomes(4'000'000'000, 960));
  EXPECT_TRUE(becomes(1, 60));
  compositor->run([&] { compositor->tell("wp_fractional_scale_v1", "preferred_scale", 0U); });
  catchUp();
  EXPECT_EQ(screen->scale(), Scale{60});
}

TEST_F(Wayland, globalsThatAreMissingAreSaidInOneLine) {
  for (const auto* global : {"wl_shm", "wl_compositor"}) {
    try {
      open(usualBut(global, 0));
      FAIL() << global;
    } catch (const std::runtime_error& error) {
      EXPECT_THAT(error.what(), testing::HasSubstr(global));
    }
    compositor.reset();
  }
}

TEST_F(Wayland, oldVersionsAreSpokenAsTheyAre) {
  for (const auto& [global, version] : std::vector<std::pair<std::string, int>>{
           {"wl_compositor", 1}, {"wl_compositor", 3}, {"wl_seat", 1}, {"wl_output", 1}}) {
    SCOPED_TRACE(global);
    screen.reset();
    openShown(usualBut(global, version));
    catchUp();
    EXPECT_FALSE(isLost);
    EXPECT_EQ(count("wl_surface.damage") > 0, global == "wl_compositor");
  }
}

/// A theme with one pointer, of one pixel.
void writeTheme(const std::filesystem::path& folder) {
  const std::vector<std::uint32_t> words{
      0x72756358, 16,         0x10000, 1, 0xfffd0002, 24, 28,  // header
      36,         0xfffd0002, 24,      1, 1,          1,  0,  0, 0, 0};
  std::filesystem::create_directories(folder / "default/cursors");
  std::ofstream(folder / "default/cursors/left_ptr", std::ios::binary)
      .write(reinterpret_cast<const char*>(words.data()),
             static_cast<std::streamsize>(words.size() * sizeof words[0]));
}

TEST_F(Wayland, aPointerThatItsScaleDoesNotDivideIsShownAsItIs) {
  const auto folder = std::filesystem::temp_directory_path() / "velmora-wayland-test";
  writeTheme(folder);
  setenv("XCURSOR_PATH", folder.c_str(), 1);
  setenv("XCURSOR_THEME", "default", 1);
  compositor = std::make_unique<StandInCompositor>(usual);
  compositor->run([&] { compositor->scale = 2; });
  openScreen();
  showPicture(2);
  ASSERT_TRUE(eventually([&] { return shows({340, 340}); }));
  compositor->run([&] { enter(); });
  EXPECT_TRUE(eventually([&] { return count("wl_pointer.set_cursor") == 1; }));
  std::filesystem::remove_all(folder);
}

TEST_F(Wayland, aSeatThatComesLaterIsTakenUp) {
  open(usualBut("wl_seat", 0));
  showPicture();
  ASSERT_TRUE(eventually([&] { return shows(small); }));
  compositor->run([&] { compositor->offer("wl_seat", 5); });
  EXPECT_TRUE(eventually([&] { return count("wl_seat.get_pointer") == 1; }));
  compositor->run([&] { enter(), press(held), press(letGo); });
  EXPECT_TRUE(eventually([&] { return opened == 1; }));
}

TEST_F(Wayland, aBufferLastsUntilAnotherIsShown) {
  openShown();
  showPicture(2);
  EXPECT_TRUE(eventually([&] { return shows({340, 340}); }));
}

}  // namespace
