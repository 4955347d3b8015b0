#pragma once

#include <functional>
#include <optional>

#include "platform/foundation/glib.hpp"

namespace desktop {

/// Tells when the user's keyring (Secret Service) opens after a widget found nobody signed in: it
/// is unlocked, or comes up late. Watched from before the widget looks until it has answered, and
/// on while the keyring is not open. Never starts the service, never prompts, reads no secret.
class KeyringWatch {
 public:
  /// `bus` is the session bus; without one nothing is ever told.
  KeyringWatch(GDBusConnection* bus, std::function<void()> opened);
  ~KeyringWatch();
  KeyringWatch(const KeyringWatch&) = delete;
  KeyringWatch& operator=(const KeyringWatch&) = delete;

  /// A widget is about to look.
  void noteQuestion();
  /// It answered and found its user signed in, or did not.
  void noteAnswer(bool isConnected);

 private:
  void watch();
  void look();
  void noteState(bool isOpen);
  void stop();
  static void looked(GObject* bus, GAsyncResult* result, gpointer watch);
  static void changed(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                      GVariant*, gpointer watch);

  GDBusConnection* bus_;
  std::function<void()> opened_;
  platform::Reference<GCancellable> cancellable_;  // of the looks under way
  unsigned changes_ = 0;                           // subscription
  unsigned owners_ = 0;                            // subscription
  std::optional<bool> isOpen_;                     // as last seen
  bool hasOpened_ = false;                         // since the question
  bool isAnswered_ = false;                        // and nobody was signed in
};

}  // namespace desktop
