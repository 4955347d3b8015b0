#pragma once

#include <gio/gio.h>

#include <cstdint>
#include <string>

#include "platform/keychain/keychain.hpp"

namespace platform {

// What the companion does to the keychain; to be called under a deadline.

/// What became of storing an item.
struct StoredItem {
  std::int32_t status = keychain_status::success;
  std::string path;  ///< the item's object path; empty in the library's file store, which has none
};

/// As keychainReadiness() says.
std::int32_t readiness(GCancellable* cancellable);

/// Puts an item into the default keychain, in the place of one with just its attributes.
StoredItem storeItem(const KeychainKey& key, const std::string& label, const std::string& data,
                     GCancellable* cancellable);

/// Removes every other item of the same key that is not locked.
std::int32_t removeOthers(const KeychainKey& key, const StoredItem& spared,
                          GCancellable* cancellable);

/// As removeGenericPassword() says.
std::int32_t removeItems(const KeychainKey& key, GCancellable* cancellable);

}  // namespace platform
