#include "platform/keychain/stored_items.hpp"

#include <algorithm>

#include "platform/keychain/secret_items.hpp"

namespace platform {

namespace {

using Items = std::vector<Object<SecretRetrievable>>;

std::string pathOf(gpointer item) { return g_dbus_proxy_get_object_path(G_DBUS_PROXY(item)); }

/// One that somebody else removed meanwhile is removed, too.
std::int32_t removalOutcome(GError* failure) {
  const auto status = outcome(failure);
  return status == keychain_status::itemNotFound ? keychain_status::success : status;
}

/// Removes the items of a service but for locked ones and the one at that path, if any.
std::int32_t removeFromService(const Items& items, const std::string& spared,
                               GCancellable* cancellable) {
  std::int32_t status = keychain_status::success;
  for (const auto& item : items) {
    if (isLocked(item.get()) || pathOf(item.get()) == spared) continue;
    GError* failure = nullptr;
    secret_item_delete_sync(SECRET_ITEM(item.get()), cancellable, &failure);
    status = std::min(status, removalOutcome(failure));  // every failure is below success
  }
  return status;
}

/// Removes the items that have these attributes, with or without further ones.
std::int32_t removeFromFile(const SecretSchema* schema, GHashTable* attributes,
                            GCancellable* cancellable) {
  GError* failure = nullptr;
  secret_password_clearv_sync(schema, attributes, cancellable, &failure);
  return removalOutcome(failure);
}

/// Whether it has attributes beside those of a key, and so was not stored here.
bool hasFurtherAttributes(GHashTable* attributes) {
  constexpr unsigned ours = 3;
  const bool namesSchema = g_hash_table_contains(attributes, "xdg:schema") != FALSE;
  return g_hash_table_size(attributes) > ours + (namesSchema ? 1 : 0);
}

std::int32_t removeOthersFromFile(const Items& items, GCancellable* cancellable) {
  std::int32_t status = keychain_status::success;
  for (const auto& item : items) {
    const Attributes attributes(secret_retrievable_get_attributes(item.get()));
    if (hasFurtherAttributes(attributes.get()))
      status = std::min(status, removeFromFile(nullptr, attributes.get(), cancellable));
  }
  return status;
}

StoredItem storeInService(const KeychainKey& key, const std::string& label, SecretValue* value,
                          GCancellable* cancellable) {
  std::int32_t status = keychain_status::success;
  const auto service = secretService(cancellable, status);
  if (!service) return {status, ""};
  const auto collection = defaultCollection(service.get(), cancellable, status);
  if (!collection) return {status, ""};
  GError* failure = nullptr;
  const Object<SecretItem> stored(secret_item_create_sync(
      collection.get(), genericSchema(), attributesOf(key).get(), label.c_str(), value,
      SECRET_ITEM_CREATE_REPLACE, cancellable, &failure));
  status = outcome(failure);
  if (stored) return {status, pathOf(stored.get())};
  return {status == keychain_status::success ? keychain_status::internalError : status, ""};
}

}  // namespace

std::int32_t readiness(GCancellable* cancellable) {
  std::int32_t status = keychain_status::success;
  if (usesFileStore()) {
    searchItems({"readiness", "", ""}, cancellable, status);  // opens the file
  } else if (const auto service = secretService(cancellable, status)) {
    defaultCollection(service.get(), cancellable, status);
  }
  return status;
}

StoredItem storeItem(const KeychainKey& key, const std::string& label, const std::string& data,
                     GCancellable* cancellable) {
  const Value value(secret_value_new(data.data(), static_cast<gssize>(data.size()), "text/plain"));
  if (!usesFileStore()) return storeInService(key, label, value.get(), cancellable);
  GError* failure = nullptr;
  secret_password_storev_binary_sync(genericSchema(), attributesOf(key).get(), nullptr,
                                     label.c_str(), value.get(), cancellable, &failure);
  return {outcome(failure), ""};
}

std::int32_t removeOthers(const KeychainKey& key, const StoredItem& spared,
                          GCancellable* cancellable) {
  std::int32_t status = keychain_status::success;
  const auto items = searchItems(key, cancellable, status);
  if (status != keychain_status::success) return status;
  return usesFileStore() ? removeOthersFromFile(items, cancellable)
                         : removeFromService(items, spared.path, cancellable);
}

std::int32_t removeItems(const KeychainKey& key, GCancellable* cancellable) {
  std::int32_t status = keychain_status::success;
  const auto items = searchItems(key, cancellable, status);
  if (status != keychain_status::success) return status;
  if (items.empty()) return keychain_status::itemNotFound;
  if (std::any_of(items.begin(), items.end(), [](const auto& i) { return isLocked(i.get()); }))
    return keychain_status::interactionNotAllowed;
  if (usesFileStore()) return removeFromFile(genericSchema(), attributesOf(key).get(), cancellable);
  return removeFromService(items, "", cancellable);
}

}  // namespace platform
