#pragma once

#include <functional>

namespace desktop {

// A display, a bus or a disk that falls silent holds up the main loop. These end the program all
// the same.

/// Has SIGINT, SIGTERM and SIGHUP call `quit` from the main loop. If the program is still there two
/// seconds later, it ends at once with status 1.
void endOnSignals(std::function<void()> quit);

/// While this lives, the program may take that many seconds; then it says the line and ends with
/// status 1. One at a time.
class ForcedEnd {
 public:
  ForcedEnd(unsigned seconds, const char* line);
  ~ForcedEnd();
  ForcedEnd(const ForcedEnd&) = delete;
  ForcedEnd& operator=(const ForcedEnd&) = delete;
};

}  // namespace desktop
