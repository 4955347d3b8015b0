#include "companion/window/keyring_prompt.hpp"

#include <libsecret/secret.h>

#include <memory>

#include "companion/window/widgets.hpp"

namespace companion::window {

namespace {

using Done = std::function<void(bool)>;

/// The handler travels through libsecret's callbacks and is called at the end of each way.
void finish(gpointer data, bool usable) {
  const std::unique_ptr<Done> done(static_cast<Done*>(data));
  (*done)(usable);
}

void unlocked(GObject* service, GAsyncResult* result, gpointer done) {
  const int count = secret_service_unlock_finish(SECRET_SERVICE(service), result, nullptr, nullptr);
  finish(done, count > 0);
}

void created(GObject*, GAsyncResult* result, gpointer done) {
  const Reference<SecretCollection> collection(secret_collection_create_finish(result, nullptr));
  finish(done, collection != nullptr);
}

void found(GObject*, GAsyncResult* result, gpointer done) {
  GError* error = nullptr;
  const Reference<SecretCollection> collection(secret_collection_for_alias_finish(result, &error));
  if (error != nullptr) {
    g_error_free(error);
    return finish(done, false);
  }
  if (!collection) {
    return secret_collection_create(nullptr, "Default keyring", SECRET_COLLECTION_DEFAULT,
                                    SECRET_COLLECTION_CREATE_NONE, nullptr, created, done);
  }
  if (!secret_collection_get_locked(collection.get())) return finish(done, true);
  auto* service = secret_collection_get_service(collection.get());
  GList objects{collection.get(), nullptr, nullptr};
  secret_service_unlock(service, &objects, nullptr, unlocked, done);
}

}  // namespace

void promptForKeyring(Done done) {
  secret_collection_for_alias(nullptr, SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, nullptr,
                              found, new Done(std::move(done)));
}

}  // namespace companion::window
