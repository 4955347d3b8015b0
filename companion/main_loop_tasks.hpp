#pragma once

#include <functional>

namespace companion {

/// Runs `work` on a thread of its own and then `done` on the main loop, in that order. `work` must
/// not throw. Without a thread to be had, both run on the main loop.
void runBeside(std::function<void()> work, std::function<void()> done);

/// Calls back from the main loop, soon. Safe from any thread.
void runSoon(std::function<void()> callback);

}  // namespace companion
