#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace desktop {

// Instants are Unix seconds of the wall clock.

/// After anything goes wrong the next question is that far ahead, seconds.
inline constexpr double regularInterval = 1800;
/// Of its own accord, or because something has come that was missing, the host asks no more often.
inline constexpr double shortestInterval = 60;
/// A widget program that takes longer for a timeline is ended. In running time (not of the wall
/// clock, which may be set, nor of suspend).
inline constexpr std::chrono::seconds longestRun{360};
/// The same for the figures at hand, which need no network.
inline constexpr std::chrono::seconds longestSnapshotRun{30};

/// What the host waits for.
struct Schedule {
  double askedAt = 0;     ///< when the reload date became known
  double reloadDate = 0;  ///< when to ask for the next timeline
  /// A timeline is being fetched; its answer will say when to reload.
  bool isFetching = false;
};

/// When to ask next: at once (`now`) when it is due, also when the clock was set back beyond the
/// moment at which the reload date became known; absent while a timeline is being fetched.
std::optional<double> nextChange(const Schedule& schedule, double now);

bool isReloadDue(const Schedule& schedule, double now);

/// The schedule after a timeline with that reload date (absent when there was none to be had, or
/// the program failed). A date that has passed already, or is more than a day ahead, counts as
/// none.
Schedule rescheduled(std::optional<double> reloadDate, double now);

/// The schedule after `failures` failed attempts in a row to show anything: a minute, then twice as
/// long each time, up to the regular interval.
Schedule retried(int failures, double now);

/// The schedule once something has come that the timeline asked for at `lastAsked` lacked: as soon
/// as the shortest interval allows.
Schedule hastened(Schedule schedule, double lastAsked, double now);

/// Unix seconds of "2026-05-21T10:00:00.250Z"; absent for anything else.
std::optional<double> unixSecondsFromIso(const std::string& text);

}  // namespace desktop
