#pragma once

#include <memory>
#include <optional>
#include <string>

#include "desktop/command_line.hpp"
#include "desktop/placement.hpp"
#include "desktop/schedule.hpp"
#include "desktop/wall_clock_timer.hpp"
#include "desktop/widget_program.hpp"
#include "desktop/widget_window.hpp"

namespace desktop {

/// Shows one widget: asks its program for the figures at hand, then for a timeline, shows the
/// pictures, and asks again when the schedule says so. Whatever goes wrong, the last good picture
/// stays.
class Host {
 public:
  /// Asks the first question at once, before a display is opened.
  Host(const CommandLine& line, std::string program, std::function<void()> quit);

  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  /// Opens the window and keeps the choices; the display must be open.
  void openWindow();
  /// Takes the options of a further call.
  void apply(const CommandLine& line);

 private:
  void change(Placement placement);
  WindowActions actions();
  void rememberScale();
  void save() const;
  void askNext();
  static gboolean askSoon(gpointer host);
  void ask(bool timeline);
  void finished(const Question& question, RunResult result);
  void lookAtClock();
  [[nodiscard]] Schedule current() const;
  void setTimer();
  [[nodiscard]] int scale() const;

  std::function<void()> quit_;
  Placement placement_;
  Schedule schedule_;
  bool wantsSnapshot_ = true;
  bool wantsTimeline_ = true;
  double askedAt_ = 0;  // running time
  unsigned soon_ = 0;   // source of askSoon
  std::optional<std::string> lastFailure_;
  std::unique_ptr<WidgetProgram> program_;
  std::unique_ptr<WidgetWindow> window_;
  WallClockTimer timer_;
  /// An answer that came before the window was open.
  std::optional<std::pair<Question, RunResult>> early_;
};

}  // namespace desktop
