#include "companion/window/about.hpp"

#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

namespace {

constexpr const char* homePage = "https://velmora.brenvik.com/";

}  // namespace

void showAbout(GtkWindow* parent) {
  const auto comments = platform::localizedString("Your AdSense earnings on the desktop");
  adw_show_about_window(parent, "application-name", "Velmora", "application-icon",
                        "com.brenvik.velmora", "version", VELMORA_VERSION, "developer-name",
                        "The Velmora developers", "comments", comments.c_str(), "license-type",
                        GTK_LICENSE_MIT_X11, "website", homePage, nullptr);
}

}  // namespace companion::window
