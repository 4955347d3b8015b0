#pragma once

#include <string>
#include <vector>

#include "platform/foundation/glib.hpp"

namespace desktop {

/// Tells assistive technologies what the widget shows, once somebody listens: when the
/// accessibility bus is there and says that it is enabled or that a screen reader runs, or when
/// ACCESSIBILITY_ENABLED=1 is in the environment. Until then nothing is loaded or started for it.
class ScreenReader {
 public:
  /// `bus` is the session bus, null without one.
  explicit ScreenReader(GDBusConnection* bus);
  ~ScreenReader();
  ScreenReader(const ScreenReader&) = delete;
  ScreenReader& operator=(const ScreenReader&) = delete;

  void say(std::vector<std::string> phrases);
  /// One phrase instead, which holds no amount.
  void sayHidden();

 private:
  void listen();
  void loadBridge();
  void pass() const;
  void said();
  static void appeared(GDBusConnection* bus, const gchar* name, const gchar* owner,
                       gpointer reader);
  static void vanished(GDBusConnection* bus, const gchar* name, gpointer reader);
  static void asked(GObject* bus, GAsyncResult* result, gpointer reader);
  static void changed(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                      GVariant*, gpointer reader);
  void ask();
  void stopWatching();

  GDBusConnection* bus_;
  std::vector<std::string> phrases_;
  platform::Reference<GCancellable> cancellable_;
  unsigned nameWatch_ = 0;
  unsigned subscription_ = 0;
  bool isHidden_ = false;
  bool hasSaid_ = false;
  // Once loaded.
  void (*say_)(const char* const* phrases, std::size_t count) = nullptr;
  void (*sayHiddenPhrase_)() = nullptr;
};

}  // namespace desktop
