#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace platform {

/// The result codes of a look-up.
namespace keychain_status {
inline constexpr std::int32_t success = 0;
inline constexpr std::int32_t itemNotFound = -25300;
/// No keychain service runs, or it cannot be reached.
inline constexpr std::int32_t notAvailable = -25291;
/// The item is locked; the user would have to be asked.
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

}  // namespace platform
