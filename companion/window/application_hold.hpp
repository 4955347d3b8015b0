#pragma once

#include <gio/gio.h>

namespace companion::window {

/// Keeps the process going, window or not, as long as it lives.
class ApplicationHold {
 public:
  ApplicationHold() { g_application_hold(g_application_get_default()); }
  ~ApplicationHold() { g_application_release(g_application_get_default()); }
  ApplicationHold(const ApplicationHold&) = delete;
  ApplicationHold& operator=(const ApplicationHold&) = delete;
};

}  // namespace companion::window
