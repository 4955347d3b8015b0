#include "platform/foundation/background_tasks.hpp"

#include <condition_variable>
#include <mutex>
#include <thread>

namespace platform {

namespace {

/// Counts the tasks that are under way; never destroyed, so that none can outlive it.
struct Executor {
  std::mutex mutex;
  std::condition_variable idle;
  int running = 0;
};

Executor& sharedExecutor() {
  static auto* const executor = new Executor;
  return *executor;
}

}  // namespace

void startBackgroundTask(std::function<void()> task) {
  auto& executor = sharedExecutor();
  {
    const std::lock_guard lock(executor.mutex);
    ++executor.running;
  }
  std::thread([task = std::move(task), &executor]() mutable {
    task();
    task = nullptr;  // release what it holds before it counts as done
    const std::lock_guard lock(executor.mutex);
    --executor.running;
    executor.idle.notify_all();
  }).detach();
}

void drainBackgroundTasks() {
  auto& executor = sharedExecutor();
  std::unique_lock lock(executor.mutex);
  executor.idle.wait(lock, [&executor] { return executor.running == 0; });
}

}  // namespace platform
