#pragma once

#include <chrono>
#include <functional>

namespace companion::window {

/// Calls back from the main loop once some time has passed; never once it is stopped or gone.
class Timer {
 public:
  Timer() = default;
  ~Timer() { stop(); }
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

  [[nodiscard]] bool isRunning() const { return source_ != 0; }
  /// Begins anew when it is running already.
  void start(std::chrono::milliseconds time, std::function<void()> callback);
  void stop();

 private:
  static int timeIsUp(void* timer);

  std::function<void()> callback_;
  unsigned source_ = 0;
};

}  // namespace companion::window
