#include "platform/keychain/keychain.hpp"

#include <chrono>

#include "platform/keychain/deadline.hpp"
#include "platform/keychain/secret_items.hpp"
#include "platform/keychain/stored_items.hpp"

namespace platform {

namespace {

constexpr std::chrono::seconds deadline{5};

KeychainLookup retrieve(SecretRetrievable* item, GCancellable* cancellable) {
  GError* failure = nullptr;
  const Value value(secret_retrievable_retrieve_secret_sync(item, cancellable, &failure));
  const auto status = outcome(failure);
  if (status != keychain_status::success || !value) return {status, std::nullopt};
  gsize length = 0;
  const gchar* bytes = secret_value_get(value.get(), &length);
  return {keychain_status::success, bytes == nullptr ? "" : std::string(bytes, length)};
}

bool isText(const std::string& attribute) {
  return attribute.find('\0') == std::string::npos &&
         g_utf8_validate(attribute.data(), static_cast<gssize>(attribute.size()), nullptr) != 0;
}

/// Absent when an item was removed between search and look: its successor stands elsewhere.
std::optional<KeychainLookup> tryToLookUp(const KeychainKey& key, GCancellable* cancellable) {
  std::int32_t status = keychain_status::success;
  const auto items = searchItems(key, cancellable, status);
  if (status != keychain_status::success) return KeychainLookup{status, std::nullopt};
  KeychainLookup result{keychain_status::itemNotFound, std::nullopt};
  for (const auto& item : items) {
    result = retrieve(item.get(), cancellable);
    if (result.status == keychain_status::itemNotFound) return std::nullopt;
    // A locked copy in one keyring does not hide an open one in another.
    if (result.status != keychain_status::interactionNotAllowed) break;
  }
  return result;
}

KeychainLookup lookUp(const KeychainKey& key, GCancellable* cancellable) {
  constexpr int mostTries = 5;
  std::optional<KeychainLookup> result;
  for (int i = 0; i < mostTries && !result; ++i) result = tryToLookUp(key, cancellable);
  return result.value_or(KeychainLookup{keychain_status::itemNotFound, std::nullopt});
}

}  // namespace

KeychainLookup lookUpGenericPassword(const std::string& service, const std::string& account,
                                     const std::string& accessGroup) {
  if (!isText(service) || !isText(account) || !isText(accessGroup))
    return {keychain_status::itemNotFound, std::nullopt};
  const KeychainKey key{service, account, accessGroup};
  return withinDeadline<KeychainLookup>(
      [key](GCancellable* cancellable) { return lookUp(key, cancellable); }, deadline);
}

std::int32_t keychainReadiness() { return withinDeadline<std::int32_t>(readiness, deadline); }

std::int32_t storeGenericPassword(const KeychainKey& key, const std::string& label,
                                  const std::string& data) {
  const auto stored = withinDeadline<StoredItem>(
      [key, label, data](GCancellable* cancellable) {
        return storeItem(key, label, data, cancellable);
      },
      deadline);
  if (stored.status == keychain_status::success)
    withinDeadline<std::int32_t>(
        [key, stored](GCancellable* cancellable) { return removeOthers(key, stored, cancellable); },
        deadline);
  return stored.status;
}

std::int32_t removeGenericPassword(const KeychainKey& key) {
  return withinDeadline<std::int32_t>(
      [key](GCancellable* cancellable) { return removeItems(key, cancellable); }, deadline);
}

}  // namespace platform
