#include "companion/window/timer.hpp"

#include <glib.h>

#include <utility>

namespace companion::window {

void Timer::start(std::chrono::milliseconds time, std::function<void()> callback) {
  stop();
  callback_ = std::move(callback);
  source_ = g_timeout_add(static_cast<unsigned>(time.count()), timeIsUp, this);
}

void Timer::stop() {
  if (source_ != 0) g_source_remove(std::exchange(source_, 0));
}

int Timer::timeIsUp(void* timer) {
  auto* self = static_cast<Timer*>(timer);
  self->source_ = 0;
  const auto callback = std::move(self->callback_);
  callback();
  return G_SOURCE_REMOVE;
}

}  // namespace companion::window
