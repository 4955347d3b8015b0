#include "platform/foundation/background_tasks.hpp"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <system_error>
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
  const auto shared = std::make_shared<std::function<void()>>(std::move(task));
  const auto run = [shared, &executor] {
    (*shared)();
    *shared = nullptr;  // release what it holds before it counts as done
    const std::lock_guard lock(executor.mutex);
    --executor.running;
    executor.idle.notify_all();
  };
  try {
    std::thread(run).detach();
  } catch (const std::system_error&) {
    run();
  }
}

void drainBackgroundTasks() {
  auto& executor = sharedExecutor();
  std::unique_lock lock(executor.mutex);
  executor.idle.wait(lock, [&executor] { return executor.running == 0; });
}

}  // namespace platform
