#pragma once

#include <gio/gio.h>

#include <chrono>
#include <functional>
#include <memory>

#include "platform/keychain/keychain.hpp"

namespace platform {

/// What is asked of the keychain's library; it ends early, if it can, once it is cancelled.
template <class Result>
using KeychainOperation = std::function<Result(GCancellable*)>;

/// Runs an operation on a thread of its own, one after another, so that a process never needs more
/// than one for all of them, and waits for its end. The status is `success` when it has ended,
/// whatever came of it. When the limit has passed, waiting for its turn included, it is cancelled
/// and left to itself, whatever it then does, and the status is `timedOut`; it owns what it uses.
/// Without a thread to be had, the status is `notAvailable`.
std::int32_t runInTurn(const KeychainOperation<void>& operation, std::chrono::milliseconds limit);

/// The same with a result, which can be made of a status alone: the operation's, or `timedOut` or
/// `notAvailable`.
template <class Result>
Result withinDeadline(const KeychainOperation<Result>& operation, std::chrono::milliseconds limit) {
  const auto result = std::make_shared<Result>();
  const auto status = runInTurn(
      [operation, result](GCancellable* cancellable) { *result = operation(cancellable); }, limit);
  return status == keychain_status::success ? std::move(*result) : Result{status};
}

}  // namespace platform
