#pragma once

#include <gio/gio.h>

#include <chrono>
#include <functional>

#include "platform/keychain/keychain.hpp"

namespace platform {

/// What is asked of the keychain's library; it ends early, if it can, once it is cancelled.
using KeychainOperation = std::function<KeychainLookup(GCancellable*)>;

/// Runs an operation on a thread of its own and waits for its result. When the limit has passed,
/// the operation is cancelled and left to itself, whatever it then does, and the status is
/// `timedOut`; it owns what it uses. Without a thread to be had, the status is `notAvailable`.
KeychainLookup withinDeadline(KeychainOperation operation, std::chrono::milliseconds limit);

}  // namespace platform
