#include "desktop/keyring_watch.hpp"

#include "desktop/guarded.hpp"

namespace desktop {

namespace {

constexpr const char* service = "org.freedesktop.secrets";
constexpr const char* defaultCollection = "/org/freedesktop/secrets/aliases/default";
constexpr int deadline = 5000;  // milliseconds

}  // namespace

KeyringWatch::KeyringWatch(GDBusConnection* bus, std::function<void()> unlocked)
    : bus_(bus), unlocked_(std::move(unlocked)), cancellable_(g_cancellable_new()) {}

KeyringWatch::~KeyringWatch() {
  g_cancellable_cancel(cancellable_.get());
  stopWatching();
}

void KeyringWatch::noteAnswer(bool isConnected) {
  if (isConnected) {
    stopWatching();
  } else if (bus_ != nullptr) {
    look();
  }
}

void KeyringWatch::look() {
  g_dbus_connection_call(bus_, service, defaultCollection, "org.freedesktop.DBus.Properties", "Get",
                         g_variant_new("(ss)", "org.freedesktop.Secret.Collection", "Locked"),
                         G_VARIANT_TYPE("(v)"), G_DBUS_CALL_FLAGS_NO_AUTO_START, deadline,
                         cancellable_.get(), looked, this);
}

void KeyringWatch::looked(GObject* bus, GAsyncResult* result, gpointer watch) {
  using Variant = platform::Owned<GVariant, g_variant_unref>;
  GError* error = nullptr;
  const Variant reply(
      g_dbus_connection_call_finish(reinterpret_cast<GDBusConnection*>(bus), result, &error));
  const bool isCancelled = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE;
  g_clear_error(&error);
  if (isCancelled || !reply) return;  // `watch` may be gone, or there is no keyring
  GVariant* value = nullptr;
  g_variant_get(reply.get(), "(v)", &value);
  const Variant locked(value);
  if (g_variant_is_of_type(locked.get(), G_VARIANT_TYPE_BOOLEAN) == FALSE) return;
  guarded([&] {
    static_cast<KeyringWatch*>(watch)->noteLocked(g_variant_get_boolean(locked.get()) != FALSE);
  });
}

void KeyringWatch::noteLocked(bool locked) {
  if (locked && subscription_ == 0) {
    // Services differ in how they tell it; whatever they tell, it is looked at.
    subscription_ =
        g_dbus_connection_signal_subscribe(bus_, service, nullptr, nullptr, nullptr, nullptr,
                                           G_DBUS_SIGNAL_FLAGS_NONE, changed, this, nullptr);
  } else if (!locked && subscription_ != 0) {
    stopWatching();
    unlocked_();
  }
}

void KeyringWatch::changed(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                           GVariant*, gpointer watch) {
  guarded([&] { static_cast<KeyringWatch*>(watch)->look(); });
}

void KeyringWatch::stopWatching() {
  if (subscription_ != 0) g_dbus_connection_signal_unsubscribe(bus_, subscription_);
  subscription_ = 0;
}

}  // namespace desktop
