#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace platform {

/// The result codes of every operation here.
namespace keychain_status {
inline constexpr std::int32_t success = 0;
inline constexpr std::int32_t itemNotFound = -25300;
/// No keychain service runs, or it cannot be reached.
inline constexpr std::int32_t notAvailable = -25291;
/// There is no default keychain that a new item could go to.
inline constexpr std::int32_t noDefaultKeychain = -25307;
/// The item, or the keychain, is locked; the user would have to be asked.
inline constexpr std::int32_t interactionNotAllowed = -25308;
/// The stored form cannot be read.
inline constexpr std::int32_t undecodable = -26275;
/// The service did not answer in time.
inline constexpr std::int32_t timedOut = -25320;
/// The user or the system refuses access.
inline constexpr std::int32_t accessDenied = -25243;
/// Any other failure.
inline constexpr std::int32_t internalError = -2070;
}  // namespace keychain_status

/// What names a generic-password item. The texts are UTF-8.
struct KeychainKey {
  std::string service;
  std::string account;
  std::string accessGroup;
};

/// What a look-up found: a status, and the item's bytes when the status is success. The bytes may
/// be empty; they are absent when the item turned out to hold no data.
struct KeychainLookup {
  std::int32_t status = keychain_status::success;
  std::optional<std::string> data;
};

/// Looks up one generic-password item by exactly these attributes in the user's keychain (the
/// Secret Service, or libsecret's file store where `SECRET_BACKEND=file` asks for it). Of several
/// matching items the one modified last is taken. Never prompts, never unlocks, never blocks for
/// longer than a few seconds, never throws. Safe from any thread.
KeychainLookup lookUpGenericPassword(const std::string& service, const std::string& account,
                                     const std::string& accessGroup);

// For the companion application alone; the widget never writes. Like the look-up, these neither
// prompt nor unlock nor throw, and end after a few seconds whatever the keychain does.

/// Whether an item could be stored now: `success`, `interactionNotAllowed` (locked),
/// `noDefaultKeychain`, or why the keychain cannot be used.
std::int32_t keychainReadiness();

/// Stores an item in the default keychain and then removes every other item of the same key,
/// whoever stored it, as far as it is not locked. `label` is what the user's keyring program
/// shows. The status is that of the storing; on a failure the former items are still there, but
/// after `timedOut` the keychain may still come to store this one.
std::int32_t storeGenericPassword(const KeychainKey& key, const std::string& label,
                                  const std::string& data);

/// Removes every item of this key. `itemNotFound` when there is none; when one of them is locked,
/// `interactionNotAllowed`, and all stay.
std::int32_t removeGenericPassword(const KeychainKey& key);

}  // namespace platform
