#include "desktop/keyring_watch.hpp"

#include "platform/processes/guarded.hpp"

namespace desktop {

namespace {

constexpr const char* service = "org.freedesktop.secrets";
constexpr const char* defaultCollection = "/org/freedesktop/secrets/aliases/default";
constexpr int deadline = 5000;  // milliseconds

/// Whether a reply to the question for "Locked" says that it is not.
bool saysOpen(GVariant* reply) {
  if (reply == nullptr) return false;  // there is no keyring
  GVariant* value = nullptr;
  g_variant_get(reply, "(v)", &value);
  const platform::GValueTree locked(value);
  return g_variant_is_of_type(locked.get(), G_VARIANT_TYPE_BOOLEAN) != FALSE &&
         g_variant_get_boolean(locked.get()) == FALSE;
}

}  // namespace

KeyringWatch::KeyringWatch(GDBusConnection* bus, std::function<void()> opened)
    : bus_(bus), opened_(std::move(opened)) {}

KeyringWatch::~KeyringWatch() { stop(); }

void KeyringWatch::noteQuestion() {
  stop();
  if (bus_ == nullptr) return;
  watch();
  look();
}

void KeyringWatch::noteAnswer(bool isConnected) {
  if (isConnected) return stop();
  isAnswered_ = true;
  if (hasOpened_) {
    stop();
    opened_();
  } else if (isOpen_ == true) {
    stop();  // open all the time: nobody is signed in
  }
}

void KeyringWatch::watch() {
  cancellable_.reset(g_cancellable_new());
  // Services differ in how they tell it; whatever they tell, it is looked at.
  changes_ = g_dbus_connection_signal_subscribe(bus_, service, nullptr, nullptr, nullptr, nullptr,
                                                G_DBUS_SIGNAL_FLAGS_NONE, changed, this, nullptr);
  owners_ = g_dbus_connection_signal_subscribe(bus_, "org.freedesktop.DBus", "org.freedesktop.DBus",
                                               "NameOwnerChanged", nullptr, service,
                                               G_DBUS_SIGNAL_FLAGS_NONE, changed, this, nullptr);
}

void KeyringWatch::look() {
  g_dbus_connection_call(bus_, service, defaultCollection, "org.freedesktop.DBus.Properties", "Get",
                         g_variant_new("(ss)", "org.freedesktop.Secret.Collection", "Locked"),
                         G_VARIANT_TYPE("(v)"), G_DBUS_CALL_FLAGS_NO_AUTO_START, deadline,
                         cancellable_.get(), looked, this);
}

void KeyringWatch::looked(GObject* bus, GAsyncResult* result, gpointer watch) {
  GError* failure = nullptr;
  const platform::GValueTree reply(
      g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &failure));
  const platform::GFailure error(failure);
  // When cancelled, `watch` may be gone.
  if (g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE) return;
  platform::guarded([&] { static_cast<KeyringWatch*>(watch)->noteState(saysOpen(reply.get())); });
}

void KeyringWatch::noteState(bool isOpen) {
  if (isOpen && isOpen_ == false) hasOpened_ = true;
  isOpen_ = isOpen;
  if (isAnswered_ && isOpen) noteAnswer(false);
}

void KeyringWatch::changed(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                           GVariant*, gpointer watch) {
  platform::guarded([&] { static_cast<KeyringWatch*>(watch)->look(); });
}

void KeyringWatch::stop() {
  g_cancellable_cancel(cancellable_.get());
  cancellable_.reset();
  for (auto* subscription : {&changes_, &owners_}) {
    if (*subscription != 0) g_dbus_connection_signal_unsubscribe(bus_, *subscription);
    *subscription = 0;
  }
  isOpen_.reset();
  hasOpened_ = isAnswered_ = false;
}

}  // namespace desktop
