#include "platform/processes/browser.hpp"

#include <gio/gdesktopappinfo.h>
#include <unistd.h>

#include <memory>

#include "platform/foundation/glib.hpp"

namespace platform {

namespace {

/// Waits for the browser's process beside everything else.
void watch(GDesktopAppInfo*, GPid process, gpointer failed) {
  auto call = std::make_unique<std::function<void()>>(*static_cast<std::function<void()>*>(failed));
  g_child_watch_add_full(
      G_PRIORITY_DEFAULT, process,
      [](GPid, int status, gpointer callback) {
        const auto& act = *static_cast<std::function<void()>*>(callback);
        if (status != 0 && act) act();
      },
      call.release(),
      [](gpointer callback) { delete static_cast<std::function<void()>*>(callback); });
}

}  // namespace

bool openInBrowser(const std::string& address, std::function<void()> failed) {
  const Reference<GAppInfo> browser(
      g_app_info_get_default_for_uri_scheme(address.starts_with("https:") ? "https" : "http"));
  if (!browser || !G_IS_DESKTOP_APP_INFO(browser.get())) return false;
  const Reference<GAppLaunchContext> context(g_app_launch_context_new());
  GList addresses{const_cast<char*>(address.c_str()), nullptr, nullptr};
  const auto flags =
      static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL |
                               G_SPAWN_STDERR_TO_DEV_NULL | G_SPAWN_DO_NOT_REAP_CHILD);
  const auto newSession = [](gpointer) { ::setsid(); };  // Ctrl-C in our terminal is not for it
  return g_desktop_app_info_launch_uris_as_manager(G_DESKTOP_APP_INFO(browser.get()), &addresses,
                                                   context.get(), flags, newSession, nullptr, watch,
                                                   &failed, nullptr) != FALSE;
}

}  // namespace platform
