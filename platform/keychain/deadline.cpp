#include "platform/keychain/deadline.hpp"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>

#include "platform/foundation/background_tasks.hpp"
#include "platform/foundation/raii.hpp"

namespace platform {

namespace {

/// Shared by the caller and the thread; the later of the two lets go of it.
struct Call {
  Owned<GCancellable, g_object_unref> cancellable{g_cancellable_new()};
  std::mutex mutex;
  std::condition_variable ended;
  std::optional<KeychainLookup> result;
};

constexpr KeychainLookup failed(std::int32_t status) { return {status, std::nullopt}; }

// GLib starts some of its own, and ends the process when it cannot.
constexpr int neededThreads = 4;

}  // namespace

KeychainLookup withinDeadline(KeychainOperation operation, std::chrono::milliseconds limit) {
  if (!canStartThreads(neededThreads)) return failed(keychain_status::notAvailable);
  const auto call = std::make_shared<Call>();
  try {
    std::thread([call, operation = std::move(operation)] {
      auto result = operation(call->cancellable.get());
      const std::lock_guard lock(call->mutex);
      call->result = std::move(result);
      call->ended.notify_all();
    }).detach();
  } catch (const std::system_error&) {
    return failed(keychain_status::notAvailable);
  }
  std::unique_lock lock(call->mutex);
  if (call->ended.wait_for(lock, limit, [&call] { return call->result.has_value(); }))
    return *call->result;
  g_cancellable_cancel(call->cancellable.get());
  return failed(keychain_status::timedOut);
}

}  // namespace platform
