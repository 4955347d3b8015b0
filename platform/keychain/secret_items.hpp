#pragma once

#include <libsecret/secret.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/foundation/raii.hpp"
#include "platform/keychain/keychain.hpp"

namespace platform {

// How libsecret is used; its calls are made under a deadline.

template <class T>
using Object = Owned<T, g_object_unref>;
using Error = Owned<GError, g_error_free>;
using Attributes = Owned<GHashTable, g_hash_table_unref>;
using Value = Owned<SecretValue, secret_value_unref>;

/// Success, or the keychain status for the failure that a call of the library left, which is freed;
/// `itemNotFound` for an item that has vanished.
std::int32_t outcome(GError* failure);

/// Items are matched by their attributes alone: whoever stored them used a schema of their own.
const SecretSchema* genericSchema();
Attributes attributesOf(const KeychainKey& key);

/// The matching items, locked ones too, the one modified last first. Never prompts. A failure is
/// in `status`. Each of them may be gone by the time that it is used.
std::vector<Object<SecretRetrievable>> searchItems(const KeychainKey& key,
                                                   GCancellable* cancellable, std::int32_t& status);

/// Whether it is an item of a service that is locked at the moment.
bool isLocked(SecretRetrievable* item);

/// Whether the library keeps items in a file of its own instead of the Secret Service, as its
/// variable SECRET_BACKEND says.
bool usesFileStore();

/// The Secret Service. Null with a failure in `status`.
Object<SecretService> secretService(GCancellable* cancellable, std::int32_t& status);

/// The service's default collection, unlocked. Null with a failure in `status`.
Object<SecretCollection> defaultCollection(SecretService* service, GCancellable* cancellable,
                                           std::int32_t& status);

}  // namespace platform
