#pragma once

#include <functional>

namespace desktop {

/// Seconds to wait after that many failures in a row: none at first, then a second, doubling up to
/// a minute.
unsigned retryDelay(int failures);

/// Spaces out the tries of something that the display may refuse again and again.
class RetryFloor {
 public:
  /// `due` is called from the main loop when a wait is over.
  explicit RetryFloor(std::function<void()> due) : due_(std::move(due)) {}
  ~RetryFloor();
  RetryFloor(const RetryFloor&) = delete;
  RetryFloor& operator=(const RetryFloor&) = delete;

  /// Not while a wait lasts.
  [[nodiscard]] bool mayTry() const { return source_ == 0; }
  void noteTry();
  /// What was tried last has come to nothing. When it had `worked`, for a while, the waits begin
  /// anew.
  void noteFailure(bool worked);

 private:
  static int waitIsOver(void* floor);

  std::function<void()> due_;
  long long triedAt_ = 0;  // microseconds of the monotonic clock
  int failures_ = 0;       // in a row
  unsigned source_ = 0;    // of the wait
};

}  // namespace desktop
