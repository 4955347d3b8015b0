#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <string>

namespace velmora {

/// The attributes under which the companion application stores its items.
inline constexpr const char* keychainService = "com.brenvik.velmora";
inline constexpr const char* keychainAccessGroup = "Q7M2K9D4XW.com.brenvik.velmora.shared";
inline constexpr const char* refreshTokenAccount = "google.refresh_token";
inline constexpr const char* objectivesAccount = "objectives";

/// The keychain could not be read; carries its status unchanged.
class KeychainError : public std::exception {
 public:
  explicit KeychainError(std::int32_t statusCode);

  [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

  std::int32_t status;

 private:
  std::string description_;
};

/// Names one item of the shared keychain.
struct KeychainItem {
  std::string service;
  std::string accessGroup;
  std::string account;

  /// The item's data as text, ill-formed UTF-8 repaired and nothing trimmed; absent when there is
  /// no such item. Throws KeychainError.
  [[nodiscard]] std::optional<std::string> readString() const;
};

/// The user's OAuth refresh token.
KeychainItem refreshTokenItem();

/// An item's bytes; absent when there is no such item. Throws KeychainError.
std::optional<std::string> readKeychainData(const std::string& account, const std::string& service,
                                            const std::string& accessGroup);

}  // namespace velmora
