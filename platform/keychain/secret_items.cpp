#include "platform/keychain/secret_items.hpp"

#include <algorithm>

namespace platform {

namespace {

using ItemList = Owned<GList, g_list_free>;

/// How the library and the services say that an object is not there, or not any more.
bool isGone(const GError* error) {
  return g_error_matches(error, SECRET_ERROR, SECRET_ERROR_NO_SUCH_OBJECT) ||
         g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_OBJECT) ||
         g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_METHOD);
}

std::int32_t statusOf(const GError* error) {
  if (g_error_matches(error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED))
    return keychain_status::interactionNotAllowed;
  if (isGone(error)) return keychain_status::itemNotFound;
  if (g_error_matches(error, SECRET_ERROR, SECRET_ERROR_INVALID_FILE_FORMAT))
    return keychain_status::undecodable;
  if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED) ||
      g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT))
    return keychain_status::timedOut;
  if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_PERMISSION_DENIED) ||
      g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_ACCESS_DENIED))
    return keychain_status::accessDenied;
  if (error->domain == G_IO_ERROR || error->domain == G_DBUS_ERROR)
    return keychain_status::notAvailable;
  return keychain_status::internalError;
}

/// Success, or the status for a failure of what is not an item.
std::int32_t serviceOutcome(GError* failure) {
  const auto status = outcome(failure);
  return status == keychain_status::itemNotFound ? keychain_status::notAvailable : status;
}

}  // namespace

std::int32_t outcome(GError* failure) {
  const Error error(failure);
  return error ? statusOf(error.get()) : keychain_status::success;
}

const SecretSchema* genericSchema() {
  static const SecretSchema schema{"org.freedesktop.Secret.Generic",
                                   SECRET_SCHEMA_DONT_MATCH_NAME,
                                   {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                    {"account", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                    {"access-group", SECRET_SCHEMA_ATTRIBUTE_STRING}},
                                   0,
                                   nullptr,
                                   nullptr,
                                   nullptr,
                                   nullptr,
                                   nullptr,
                                   nullptr,
                                   nullptr};
  return &schema;
}

Attributes attributesOf(const KeychainKey& key) {
  return Attributes(secret_attributes_build(genericSchema(), "service", key.service.c_str(),
                                            "account", key.account.c_str(), "access-group",
                                            key.accessGroup.c_str(), nullptr));
}

std::vector<Object<SecretRetrievable>> searchItems(const KeychainKey& key,
                                                   GCancellable* cancellable,
                                                   std::int32_t& status) {
  constexpr int mostTries = 10;  // an item that is removed meanwhile fails the whole search
  ItemList list;
  status = keychain_status::itemNotFound;
  for (int i = 0; i < mostTries && status == keychain_status::itemNotFound; ++i) {
    GError* failure = nullptr;
    list.reset(secret_password_searchv_sync(genericSchema(), attributesOf(key).get(),
                                            SECRET_SEARCH_ALL, cancellable, &failure));
    status = outcome(failure);
  }
  if (status == keychain_status::itemNotFound) status = keychain_status::notAvailable;
  std::vector<Object<SecretRetrievable>> items;
  for (GList* node = list.get(); node != nullptr; node = node->next)
    items.emplace_back(SECRET_RETRIEVABLE(node->data));
  std::stable_sort(items.begin(), items.end(), [](const auto& a, const auto& b) {
    return secret_retrievable_get_modified(a.get()) > secret_retrievable_get_modified(b.get());
  });
  return items;
}

bool isLocked(SecretRetrievable* item) {
  return SECRET_IS_ITEM(item) && secret_item_get_locked(SECRET_ITEM(item)) != FALSE;
}

bool usesFileStore() { return g_strcmp0(g_getenv("SECRET_BACKEND"), "file") == 0; }

Object<SecretService> secretService(GCancellable* cancellable, std::int32_t& status) {
  GError* failure = nullptr;
  Object<SecretService> service(
      secret_service_get_sync(SECRET_SERVICE_NONE, cancellable, &failure));
  status = serviceOutcome(failure);
  return service;
}

Object<SecretCollection> defaultCollection(SecretService* service, GCancellable* cancellable,
                                           std::int32_t& status) {
  GError* failure = nullptr;
  Object<SecretCollection> collection(secret_collection_for_alias_sync(
      service, SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, cancellable, &failure));
  status = serviceOutcome(failure);
  if (status != keychain_status::success) return nullptr;
  if (!collection) status = keychain_status::noDefaultKeychain;
  if (collection && secret_collection_get_locked(collection.get()) != FALSE)
    status = keychain_status::interactionNotAllowed;
  return status == keychain_status::success ? std::move(collection) : nullptr;
}

}  // namespace platform
