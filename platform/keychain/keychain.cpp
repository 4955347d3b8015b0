#include "platform/keychain/keychain.hpp"

#include <algorithm>
#include <chrono>

#include "platform/keychain/deadline.hpp"
#include "platform/keychain/secret_items.hpp"

namespace platform {

namespace {

constexpr std::chrono::seconds deadline{5};

KeychainLookup retrieve(SecretRetrievable* item, GCancellable* cancellable) {
  GError* failure = nullptr;
  const Value value(secret_retrievable_retrieve_secret_sync(item, cancellable, &failure));
  const Error error(failure);
  if (error) return {statusOf(error.get()), std::nullopt};
  if (!value) return {keychain_status::success, std::nullopt};
  gsize length = 0;
  const gchar* bytes = secret_value_get(value.get(), &length);
  return {keychain_status::success, bytes == nullptr ? "" : std::string(bytes, length)};
}

/// The libraries would write their warnings to standard error.
void silenceLibraries() {
  g_log_set_default_handler([](const gchar*, GLogLevelFlags, const gchar*, gpointer) {}, nullptr);
}

bool isText(const std::string& attribute) {
  return attribute.find('\0') == std::string::npos &&
         g_utf8_validate(attribute.data(), static_cast<gssize>(attribute.size()), nullptr) != 0;
}

KeychainLookup lookUp(const KeychainKey& key, GCancellable* cancellable) {
  std::int32_t status = keychain_status::success;
  const auto items = searchItems(key, cancellable, status);
  if (status != keychain_status::success) return {status, std::nullopt};
  KeychainLookup result{keychain_status::itemNotFound, std::nullopt};
  for (const auto& item : items) {
    result = retrieve(item.get(), cancellable);
    // A locked copy in one keyring does not hide an open one in another.
    if (result.status != keychain_status::interactionNotAllowed) break;
  }
  return result;
}

/// Success, or the failure that a call of the library left.
std::int32_t outcome(GError* failure) {
  const Error error(failure);
  return error ? statusOf(error.get()) : keychain_status::success;
}

std::int32_t readiness(GCancellable* cancellable) {
  std::int32_t status = keychain_status::success;
  if (usesFileStore()) {
    searchItems({"readiness", "", ""}, cancellable, status);  // opens the file
  } else if (const auto service = secretService(cancellable, status)) {
    defaultCollection(service.get(), cancellable, status);
  }
  return status;
}

std::string pathOf(gpointer item) { return g_dbus_proxy_get_object_path(G_DBUS_PROXY(item)); }

/// Removes the items of a service but for locked ones and the one at that path, if any.
std::int32_t removeItems(const std::vector<Object<SecretRetrievable>>& items,
                         const std::string& spared, GCancellable* cancellable) {
  std::int32_t status = keychain_status::success;
  for (const auto& item : items) {
    if (isLocked(item.get()) || pathOf(item.get()) == spared) continue;
    GError* failure = nullptr;
    secret_item_delete_sync(SECRET_ITEM(item.get()), cancellable, &failure);
    status = std::min(status, outcome(failure));  // every failure is below success
  }
  return status;
}

/// The path of the new item is the result's data.
KeychainLookup storeInService(const KeychainKey& key, const std::string& label, SecretValue* value,
                              GCancellable* cancellable) {
  std::int32_t status = keychain_status::success;
  const auto service = secretService(cancellable, status);
  if (!service) return {status, std::nullopt};
  const auto collection = defaultCollection(service.get(), cancellable, status);
  if (!collection) return {status, std::nullopt};
  GError* failure = nullptr;
  const Object<SecretItem> stored(secret_item_create_sync(
      collection.get(), genericSchema(), attributesOf(key).get(), label.c_str(), value,
      SECRET_ITEM_CREATE_REPLACE, cancellable, &failure));
  status = outcome(failure);
  if (!stored) return {status, std::nullopt};
  return {status, pathOf(stored.get())};
}

KeychainLookup store(const KeychainKey& key, const std::string& label, const std::string& data,
                     GCancellable* cancellable) {
  const Value value(secret_value_new(data.data(), static_cast<gssize>(data.size()), "text/plain"));
  if (!usesFileStore()) return storeInService(key, label, value.get(), cancellable);
  // The file store keeps one item for the same attributes.
  GError* failure = nullptr;
  secret_password_storev_binary_sync(genericSchema(), attributesOf(key).get(), nullptr,
                                     label.c_str(), value.get(), cancellable, &failure);
  return {outcome(failure), std::nullopt};
}

std::int32_t removeOthers(const KeychainKey& key, const std::string& spared,
                          GCancellable* cancellable) {
  std::int32_t status = keychain_status::success;
  const auto items = searchItems(key, cancellable, status);
  return status == keychain_status::success ? removeItems(items, spared, cancellable) : status;
}

std::int32_t remove(const KeychainKey& key, GCancellable* cancellable) {
  std::int32_t status = keychain_status::success;
  const auto items = searchItems(key, cancellable, status);
  if (status != keychain_status::success) return status;
  if (items.empty()) return keychain_status::itemNotFound;
  if (std::any_of(items.begin(), items.end(), [](const auto& i) { return isLocked(i.get()); }))
    return keychain_status::interactionNotAllowed;
  if (SECRET_IS_ITEM(items.front().get())) return removeItems(items, "", cancellable);
  GError* failure = nullptr;
  secret_password_clearv_sync(genericSchema(), attributesOf(key).get(), cancellable, &failure);
  return outcome(failure);
}

KeychainOperation withStatusAlone(std::function<std::int32_t(GCancellable*)> operation) {
  return [operation = std::move(operation)](GCancellable* cancellable) {
    return KeychainLookup{operation(cancellable), std::nullopt};
  };
}

}  // namespace

KeychainLookup lookUpGenericPassword(const std::string& service, const std::string& account,
                                     const std::string& accessGroup) {
  if (!isText(service) || !isText(account) || !isText(accessGroup))
    return {keychain_status::itemNotFound, std::nullopt};
  silenceLibraries();
  const KeychainKey key{service, account, accessGroup};
  return withinDeadline([key](GCancellable* cancellable) { return lookUp(key, cancellable); },
                        deadline);
}

std::int32_t keychainReadiness() {
  silenceLibraries();
  return withinDeadline(withStatusAlone(readiness), deadline).status;
}

std::int32_t storeGenericPassword(const KeychainKey& key, const std::string& label,
                                  const std::string& data) {
  silenceLibraries();
  const auto stored = withinDeadline(
      [key, label, data](GCancellable* cancellable) {
        return store(key, label, data, cancellable);
      },
      deadline);
  if (stored.data)
    withinDeadline(withStatusAlone([key, path = *stored.data](GCancellable* cancellable) {
                     return removeOthers(key, path, cancellable);
                   }),
                   deadline);
  return stored.status;
}

std::int32_t removeGenericPassword(const KeychainKey& key) {
  silenceLibraries();
  return withinDeadline(
             withStatusAlone([key](GCancellable* cancellable) { return remove(key, cancellable); }),
             deadline)
      .status;
}

}  // namespace platform
