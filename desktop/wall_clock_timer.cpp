#include "desktop/wall_clock_timer.hpp"

#include <glib-unix.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdint>

#include "platform/processes/guarded.hpp"

namespace desktop {

namespace {

gboolean readable(gint descriptor, GIOCondition, gpointer fired) {
  std::uint64_t expirations = 0;
  // An error says that the clock was set; either way it is time to look.
  const auto count = read(descriptor, &expirations, sizeof expirations);
  static_cast<void>(count);
  platform::guarded([&] { (*static_cast<std::function<void()>*>(fired))(); });
  return G_SOURCE_CONTINUE;
}

}  // namespace

double wallClock() {
  const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
  return now.count();
}

WallClockTimer::WallClockTimer(std::function<void()> fired)
    : fired_(std::move(fired)),
      descriptor_(timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)),
      source_(g_unix_fd_add(descriptor_, G_IO_IN, readable, &fired_)) {}

WallClockTimer::~WallClockTimer() {
  g_source_remove(source_);
  close(descriptor_);
}

void WallClockTimer::set(std::optional<double> unixSeconds) {
  itimerspec when{};
  if (unixSeconds) {
    const double whole = std::floor(*unixSeconds);
    when.it_value.tv_sec = static_cast<time_t>(whole);
    when.it_value.tv_nsec = static_cast<long>((*unixSeconds - whole) * 1e9);
    if (when.it_value.tv_sec <= 0) when.it_value = {0, 1};  // zero would disarm it
  }
  timerfd_settime(descriptor_, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &when, nullptr);
}

}  // namespace desktop
