#pragma once

#include <functional>

namespace platform {

/// Starts a task on the shared executor and returns at once. Tasks run side by side, each on a
/// thread of its own that inherits the caller's priority; where the system has no thread left, the
/// task is over when this returns. A task that throws ends the process, so
/// tasks handle their own errors.
void startBackgroundTask(std::function<void()> task);

/// Whether the system has so many threads left right now. They are gone again when this returns.
bool canStartThreads(int count);

/// Waits until no task is left. A program calls it before it leaves main.
void drainBackgroundTasks();

}  // namespace platform
