#include "companion/browser.hpp"

#include <gio/gdesktopappinfo.h>

#include "platform/foundation/raii.hpp"

namespace companion {

namespace {

using AppInfo = platform::Owned<GAppInfo, g_object_unref>;
using LaunchContext = platform::Owned<GAppLaunchContext, g_object_unref>;

}  // namespace

bool openInBrowser(const std::string& address) {
  const AppInfo browser(
      g_app_info_get_default_for_uri_scheme(address.starts_with("https:") ? "https" : "http"));
  if (!browser || !G_IS_DESKTOP_APP_INFO(browser.get())) return false;
  const LaunchContext context(g_app_launch_context_new());
  GList addresses{const_cast<char*>(address.c_str()), nullptr, nullptr};
  const auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL |
                                              G_SPAWN_STDERR_TO_DEV_NULL);
  return g_desktop_app_info_launch_uris_as_manager(G_DESKTOP_APP_INFO(browser.get()), &addresses,
                                                   context.get(), flags, nullptr, nullptr, nullptr,
                                                   nullptr, nullptr) != FALSE;
}

}  // namespace companion
