#include "platform/foundation/background_tasks.hpp"

#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <latch>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

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

constexpr std::chrono::milliseconds shortWhile{2};

bool isAlive(pid_t thread) {
  std::error_code ignored;
  return std::filesystem::exists("/proc/self/task/" + std::to_string(thread), ignored);
}

/// Whether so many threads could be started at once; they are gone again when this returns.
bool startAndEnd(int count) {
  std::vector<pid_t> numbers(static_cast<std::size_t>(count));
  std::vector<std::jthread> threads;
  std::latch release(1);
  bool all = true;
  try {
    for (auto& number : numbers) {
      threads.emplace_back([&release, &number] {
        number = ::gettid();
        release.wait();
      });
    }
  } catch (const std::system_error&) {
    all = false;
  }
  release.count_down();
  const auto started = threads.size();
  threads.clear();  // joins them before the latch goes
  for (std::size_t i = 0; i < started; ++i) {
    for (int attempt = 0; attempt < 50 && isAlive(numbers[i]); ++attempt)
      std::this_thread::sleep_for(shortWhile);
  }
  return all;
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

bool canStartThreads(int count) {
  // Threads that are just ending still count for the system's limit.
  for (int attempt = 0; attempt < 50; ++attempt) {
    if (startAndEnd(count)) return true;
    std::this_thread::sleep_for(shortWhile);
  }
  return false;
}

}  // namespace platform
