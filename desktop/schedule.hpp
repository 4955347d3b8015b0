#pragma once

#include <optional>
#include <string>

namespace desktop {

// Instants are Unix seconds of the wall clock.

/// After anything goes wrong the next question is that far ahead, seconds.
inline constexpr double regularInterval = 1800;
/// A widget program that takes longer is ended, seconds.
inline constexpr double longestRun = 360;

/// What the host waits for.
struct Schedule {
  double askedAt = 0;     ///< when the reload date became known
  double reloadDate = 0;  ///< when to ask for the next timeline
  /// For how long the widget program has run, seconds of running time (not of the wall clock,
  /// which may be set, nor of suspend); absent while none runs.
  std::optional<double> running;
};

/// When anything changes next: at once (`now`) when it is due, also when the clock was set back
/// beyond the moment at which the reload date became known.
double nextChange(const Schedule& schedule, double now);

bool isReloadDue(const Schedule& schedule, double now);
bool isRunOverdue(const Schedule& schedule);

/// The schedule after a timeline with that reload date (absent when there was none to be had, or
/// the program failed). A date that has passed already, or is more than a day ahead, counts as
/// none.
Schedule rescheduled(std::optional<double> reloadDate, double now);

/// Unix seconds of "2026-05-21T10:00:00.250Z"; absent for anything else.
std::optional<double> unixSecondsFromIso(const std::string& text);

}  // namespace desktop
