#pragma once

#include <functional>
#include <optional>

namespace desktop {

/// Unix seconds of the wall clock.
double wallClock();

/// One one-shot timer on the wall clock in the main loop. A date that passes during suspend, and a
/// clock that is set, are noticed at once.
class WallClockTimer {
 public:
  /// `fired` is called when the date has come, or when the clock was set; the timer then stands
  /// still until it is set again.
  explicit WallClockTimer(std::function<void()> fired);
  ~WallClockTimer();
  WallClockTimer(const WallClockTimer&) = delete;
  WallClockTimer& operator=(const WallClockTimer&) = delete;

  /// Without a date it stands still.
  void set(std::optional<double> unixSeconds);

 private:
  std::function<void()> fired_;
  int descriptor_;
  unsigned source_;
};

}  // namespace desktop
