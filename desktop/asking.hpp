#pragma once

#include <functional>
#include <optional>
#include <string>

#include "desktop/keyring_watch.hpp"
#include "desktop/network_watch.hpp"
#include "desktop/schedule.hpp"
#include "desktop/wall_clock_timer.hpp"
#include "desktop/widget_program.hpp"

namespace desktop {

/// Asks the widget program, and says when: for the figures at hand whenever something else is to be
/// seen than is, for a timeline at the start and when the schedule says so. Whatever the program
/// does, it is asked again in time and never without a pause.
class Asking {
 public:
  struct Events {
    /// How the widget is to look, and whether it is seen that way (or is about to be).
    std::function<Look()> wanted;
    std::function<bool()> isSeen;
    /// A picture in the look that is wanted.
    std::function<void(RunResult, const Look&)> answered;
    /// A timeline came, whether in that look or not.
    std::function<void(const WidgetAnswer&)> timelineAnswered;
    /// Nothing more will happen for a while.
    std::function<void()> rests;
  };

  /// `bus` is the session bus, null without one.
  Asking(const std::string& program, GDBusConnection* bus, Events events);
  ~Asking();
  Asking(const Asking&) = delete;
  Asking& operator=(const Asking&) = delete;

  /// What is wanted, or what is seen, may have changed.
  void follow();
  /// Asks for a timeline now.
  void refresh();

 private:
  void askNext();
  void ask(WidgetProgram& program, bool timeline);
  void ended(const Question& question, RunResult result);
  void timelineEnded(const RunResult& result);
  void noteFailure(const Question& question, const std::string& failure);
  void askSooner();
  void lookAtClock();
  void setTimer();
  static gboolean paintedThenAsk(gpointer asking);

  Events events_;
  Schedule schedule_;
  bool wantsSnapshot_ = true;
  bool wantsTimeline_ = true;
  bool lacksNothing_ = true;  // what a timeline that is being fetched lacked has come meanwhile
  double timelineAskedAt_ = 0;
  int failures_ = 0;   // in a row, while something else is seen than is wanted
  unsigned idle_ = 0;  // source
  std::optional<std::string> lastFailure_;
  WidgetProgram snapshot_;
  WidgetProgram timeline_;
  WallClockTimer timer_;
  NetworkWatch network_;
  KeyringWatch keyring_;
};

}  // namespace desktop
