#pragma once

#include <gio/gio.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "desktop/command_line.hpp"
#include "desktop/keyring_watch.hpp"
#include "desktop/menu.hpp"
#include "desktop/network_watch.hpp"
#include "desktop/placement.hpp"
#include "desktop/schedule.hpp"
#include "desktop/screen_reader.hpp"
#include "desktop/screens/screen.hpp"
#include "desktop/wall_clock_timer.hpp"
#include "desktop/widget_program.hpp"

namespace desktop {

/// Shows one widget: asks its program for the figures at hand, then for a timeline, shows the
/// pictures, and asks again when the schedule says so. Whatever goes wrong, the last good picture
/// stays.
class Host {
 public:
  /// Asks the first question at once, before a display is opened. `quit` is called with an exit
  /// status. `bus` is the session bus, null without one.
  Host(const CommandLine& line, const std::string& program, GDBusConnection* bus,
       std::function<void(int)> quit);
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  /// Opens the display and keeps the choices. Throws std::runtime_error when there is none.
  void openDisplay();
  /// Takes the options of a further call.
  void apply(const CommandLine& line);

 private:
  ScreenEvents events();
  void choose(const MenuChoice& choice);
  void chooseCorner(Corner corner);
  void change(Placement placement);
  void screenChanged();
  void openCompanion(const std::string& startup) const;
  void openMenu(const MenuSpot& spot);

  [[nodiscard]] Look wanted() const;
  [[nodiscard]] bool showsWanted() const;
  void refresh();
  void hasten();
  void follow();
  void askNext();
  void ask(WidgetProgram& program, bool timeline);
  void timelineEnded(const RunResult& result);
  void ended(const Question& question, RunResult result);
  void fail(const Question& question, const std::string& failure);
  static gboolean askSoon(gpointer host);
  void lookAtClock();
  void setTimer();

  std::function<void(int)> quit_;
  Placement placement_;
  Schedule schedule_;
  bool wantsSnapshot_ = true;
  bool wantsTimeline_ = true;
  bool hastens_ = false;          // what a timeline that is being fetched lacks has come
  double snapshotStartedAt_ = 0;  // running time
  double timelineStartedAt_ = 0;
  double timelineAskedAt_ = 0;  // wall clock
  int failures_ = 0;            // in a row, while something else is shown than is wanted
  unsigned soon_ = 0;           // source of askSoon
  std::optional<std::string> lastFailure_;
  std::unique_ptr<Screen> screen_;
  /// An answer that came before the screen could show it.
  std::optional<std::pair<Question, RunResult>> early_;
  WidgetProgram snapshot_;
  WidgetProgram timeline_;
  WallClockTimer timer_;
  Menu menu_;
  ScreenReader reader_;
  NetworkWatch network_;
  KeyringWatch keyring_;
};

}  // namespace desktop
