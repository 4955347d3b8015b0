#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "platform/foundation/glib.hpp"

namespace desktop {

struct Notification {
  std::string id;  ///< the caller's own
  std::string title;
  std::string body;          ///< plain text
  std::uint8_t urgency = 1;  ///< 0 low, 1 normal, 2 critical
};

/// Posts notifications to the user's notification service (Desktop Notifications, version 1.2) and
/// opens the companion when one is clicked. Whatever the service does, nothing here waits for it;
/// while nothing is posted, it wakes nobody.
class Notifications {
 public:
  /// `bus` is the session bus, null without one.
  explicit Notifications(GDBusConnection* bus);
  ~Notifications();
  Notifications(const Notifications&) = delete;
  Notifications& operator=(const Notifications&) = delete;

  /// Calls back from the main loop if a service is there, or can be started, and answers within a
  /// few seconds. A question that is under way takes the place of a further one.
  void whenThere(std::function<void()> then);
  void post(const Notification& notification);
  /// Takes one back that was posted here.
  void close(const std::string& id);
  void closeAll();

 private:
  struct Posting;
  void listen();
  void rest();
  void forget(std::uint32_t number);
  void called(const std::string& signal, GVariant* arguments);
  void call(const char* method, GVariant* arguments, GAsyncReadyCallback replied, gpointer data);
  static void capabilitiesCame(GObject* bus, GAsyncResult* result, gpointer notifications);
  static void posted(GObject* bus, GAsyncResult* result, gpointer posting);
  static void signalled(GDBusConnection*, const gchar*, const gchar*, const gchar*,
                        const gchar* signal, GVariant* arguments, gpointer notifications);

  GDBusConnection* bus_;
  platform::Reference<GCancellable> cancellable_;
  std::function<void()> then_;  // while a question is under way
  bool takesMarkup_ = false;
  std::map<std::string, std::uint32_t> posted_;  // the service's numbers
  std::map<std::uint32_t, std::string> tokens_;  // by which a window may come to the front
  int underWay_ = 0;                             // postings
  unsigned signals_ = 0;                         // subscription
  unsigned owners_ = 0;                          // subscription
};

}  // namespace desktop
