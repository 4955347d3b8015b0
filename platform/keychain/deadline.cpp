#include "platform/keychain/deadline.hpp"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

#include "platform/foundation/background_tasks.hpp"

namespace platform {

namespace {

/// One operation under way; the later of caller and thread lets go of it.
struct Call {
  KeychainOperation<void> operation;
  std::shared_ptr<GCancellable> cancellable{g_cancellable_new(), g_object_unref};
  bool hasEnded = false;
};

/// Shared by all callers and threads. Never destroyed, since a thread may outlive main.
struct Turn {
  std::mutex mutex;  ///< for the calls' ends, too
  std::condition_variable changed;
  bool isTaken = false;
};

Turn& turn() {
  static auto* const instance = new Turn;
  return *instance;
}

void carryOut(const std::shared_ptr<Call>& call) {
  call->operation(call->cancellable.get());
  const std::lock_guard lock(turn().mutex);
  call->hasEnded = true;
  turn().changed.notify_all();
}

/// GLib starts threads of its own for the first operation, and ends the process when it cannot.
bool hasThreadsForGLib() {
  constexpr int needed = 4;
  static std::atomic<bool> had = false;
  if (!had) had = canStartThreads(needed);
  return had;
}

/// Returns whether there was a thread for it. One that is just ending, the last operation's
/// perhaps, still counts for the system's limit.
bool start(const std::shared_ptr<Call>& call) {
  if (!hasThreadsForGLib()) return false;
  constexpr int mostTries = 50;
  constexpr std::chrono::milliseconds pause{2};
  for (int i = 0; i < mostTries; ++i) {
    try {
      std::thread(carryOut, call).detach();
      return true;
    } catch (const std::system_error&) {
      std::this_thread::sleep_for(pause);
    }
  }
  return false;
}

}  // namespace

std::int32_t runInTurn(const KeychainOperation<void>& operation, std::chrono::milliseconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  const auto call = std::make_shared<Call>(Call{operation});
  auto& [mutex, changed, isTaken] = turn();
  std::unique_lock lock(mutex);
  if (!changed.wait_until(lock, end, [&] { return !isTaken; })) return keychain_status::timedOut;
  isTaken = true;
  lock.unlock();
  const bool hasThread = start(call);
  lock.lock();
  if (hasThread) changed.wait_until(lock, end, [&] { return call->hasEnded; });
  isTaken = false;
  const bool hasEnded = call->hasEnded;
  lock.unlock();
  changed.notify_all();
  if (!hasThread) return keychain_status::notAvailable;
  if (hasEnded) return keychain_status::success;
  g_cancellable_cancel(call->cancellable.get());
  return keychain_status::timedOut;
}

}  // namespace platform
