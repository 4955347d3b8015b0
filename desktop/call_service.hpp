#pragma once

#include <gio/gio.h>

#include <functional>

#include "desktop/running_host.hpp"

namespace desktop {

/// Takes further calls of the program on the session bus, while it lives.
class CallService {
 public:
  using Handler = std::function<HostAnswer(const HostCall&)>;

  /// `handler` is called from the main loop.
  CallService(GDBusConnection* bus, Handler handler);
  ~CallService();
  CallService(const CallService&) = delete;
  CallService& operator=(const CallService&) = delete;

 private:
  static void called(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                     GVariant* words, GDBusMethodInvocation* invocation, gpointer service);

  GDBusConnection* bus_;
  Handler handler_;
  unsigned registration_ = 0;
};

}  // namespace desktop
