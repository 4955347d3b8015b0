#include "platform/keychain/keychain.hpp"

#include <libsecret/secret.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/foundation/raii.hpp"

namespace platform {

namespace {

constexpr std::chrono::seconds deadline{5};

template <class T>
using Object = Owned<T, g_object_unref>;
using Error = Owned<GError, g_error_free>;
using Attributes = Owned<GHashTable, g_hash_table_unref>;
using Value = Owned<SecretValue, secret_value_unref>;

/// Cancels the operations that carry its cancellable when it has lived for the deadline.
class Watchdog {
 public:
  Watchdog() : cancellable_(g_cancellable_new()), thread_([this] { watch(); }) {}
  ~Watchdog() {
    {
      const std::lock_guard lock(mutex_);
      done_ = true;
    }
    ended_.notify_all();
    thread_.join();
  }
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;

  GCancellable* cancellable() { return cancellable_.get(); }

 private:
  void watch() {
    std::unique_lock lock(mutex_);
    if (!ended_.wait_for(lock, deadline, [this] { return done_; }))
      g_cancellable_cancel(cancellable_.get());
  }

  Object<GCancellable> cancellable_;
  std::mutex mutex_;
  std::condition_variable ended_;
  bool done_ = false;
  std::thread thread_;
};

std::int32_t statusOf(const GError* error) {
  if (g_error_matches(error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED))
    return keychain_status::interactionNotAllowed;
  if (g_error_matches(error, SECRET_ERROR, SECRET_ERROR_NO_SUCH_OBJECT))
    return keychain_status::itemNotFound;
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

/// The matching items, the one modified last first. Throws nothing; a failure is in `status`.
std::vector<Object<SecretRetrievable>> search(const std::string& service,
                                              const std::string& account,
                                              const std::string& accessGroup,
                                              GCancellable* cancellable, std::int32_t& status) {
  // Items are matched by their attributes alone: whoever stored them used a schema of their own.
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
  const Attributes attributes(secret_attributes_build(&schema, "service", service.c_str(),
                                                      "account", account.c_str(), "access-group",
                                                      accessGroup.c_str(), nullptr));
  GError* failure = nullptr;
  GList* list = secret_password_searchv_sync(&schema, attributes.get(), SECRET_SEARCH_ALL,
                                             cancellable, &failure);
  const Error error(failure);
  if (error) status = statusOf(error.get());
  std::vector<Object<SecretRetrievable>> items;
  for (GList* node = list; node != nullptr; node = node->next)
    items.emplace_back(SECRET_RETRIEVABLE(node->data));
  g_list_free(list);
  std::stable_sort(items.begin(), items.end(), [](const auto& a, const auto& b) {
    return secret_retrievable_get_modified(a.get()) > secret_retrievable_get_modified(b.get());
  });
  return items;
}

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

}  // namespace

KeychainLookup lookUpGenericPassword(const std::string& service, const std::string& account,
                                     const std::string& accessGroup) {
  if (!isText(service) || !isText(account) || !isText(accessGroup))
    return {keychain_status::itemNotFound, std::nullopt};
  silenceLibraries();
  Watchdog watchdog;
  std::int32_t status = keychain_status::success;
  const auto items = search(service, account, accessGroup, watchdog.cancellable(), status);
  if (status != keychain_status::success) return {status, std::nullopt};

  KeychainLookup result{keychain_status::itemNotFound, std::nullopt};
  for (const auto& item : items) {
    result = retrieve(item.get(), watchdog.cancellable());
    // A locked copy in one keyring does not hide an open one in another.
    if (result.status != keychain_status::interactionNotAllowed) break;
  }
  return result;
}

}  // namespace platform
