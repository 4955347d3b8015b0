#pragma once

#include <gio/gio.h>

#include <functional>

#include "platform/foundation/raii.hpp"

namespace desktop {

/// Tells when the user's keyring (Secret Service) is unlocked after a widget found nobody signed
/// in and the keyring was locked. Only then is it watched. Never starts the service, never
/// prompts, reads no secret.
class KeyringWatch {
 public:
  /// `bus` is the session bus; without one nothing is ever told.
  KeyringWatch(GDBusConnection* bus, std::function<void()> unlocked);
  ~KeyringWatch();
  KeyringWatch(const KeyringWatch&) = delete;
  KeyringWatch& operator=(const KeyringWatch&) = delete;

  /// A widget answered and found its user signed in, or did not.
  void noteAnswer(bool isConnected);

 private:
  void look();
  void noteLocked(bool locked);
  void stopWatching();
  static void looked(GObject* bus, GAsyncResult* result, gpointer watch);
  static void changed(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                      GVariant*, gpointer watch);

  GDBusConnection* bus_;
  std::function<void()> unlocked_;
  platform::Owned<GCancellable, g_object_unref> cancellable_;
  unsigned subscription_ = 0;  // while it is locked
};

}  // namespace desktop
