#include "desktop/screens/retry_floor.hpp"

#include <glib.h>

#include <algorithm>

#include "platform/processes/guarded.hpp"

namespace desktop {

namespace {

constexpr unsigned longestDelay = 60;
constexpr gint64 shortestSuccess = gint64{5} * G_USEC_PER_SEC;

}  // namespace

unsigned retryDelay(int failures) {
  if (failures <= 0) return 0;
  return std::min(longestDelay, 1U << std::min(failures - 1, 6));
}

RetryFloor::~RetryFloor() {
  if (source_ != 0) g_source_remove(source_);
}

void RetryFloor::noteTry() { triedAt_ = g_get_monotonic_time(); }

void RetryFloor::noteFailure(bool worked) {
  const bool held = worked && g_get_monotonic_time() - triedAt_ >= shortestSuccess;
  failures_ = held ? 0 : failures_ + 1;
  if (const auto delay = retryDelay(failures_); delay > 0 && source_ == 0)
    source_ = g_timeout_add_seconds(delay, waitIsOver, this);
}

int RetryFloor::waitIsOver(void* floor) {
  auto& self = *static_cast<RetryFloor*>(floor);
  self.source_ = 0;
  platform::guarded(self.due_);
  return G_SOURCE_REMOVE;
}

}  // namespace desktop
