#include "companion/window/about.hpp"

#include "companion/window/widgets.hpp"
#include "platform/foundation/languages.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

namespace {

constexpr const char* homePage = "https://velmora.brenvik.com/";

std::string setting(const char* variable) {
  const char* value = g_getenv(variable);
  return value == nullptr ? "" : value;
}

/// What somebody who looks into a fault asks first; nothing of the account.
std::string debugInformation() {
  const GText system(g_get_os_info(G_OS_INFO_KEY_PRETTY_NAME));
  std::string text = "Velmora " VELMORA_VERSION "\n";
  text += "System: " + std::string(system ? system.get() : "") + "\n";
  text += "Desktop: " + setting("XDG_CURRENT_DESKTOP") + ", " + setting("XDG_SESSION_TYPE") + "\n";
  text += "Display: " + std::string(G_OBJECT_TYPE_NAME(gdk_display_get_default())) + "\n";
  text += "Languages:";
  for (const auto& language : platform::stringTableLanguages()) text += " " + language;
  text += "\nGTK " + std::to_string(gtk_get_major_version()) + "." +
          std::to_string(gtk_get_minor_version()) + ", libadwaita " +
          std::to_string(adw_get_major_version()) + "." + std::to_string(adw_get_minor_version());
  return text + "\n";
}

}  // namespace

void showAbout(GtkWindow* parent) {
  const auto debugInfo = debugInformation();
  const auto comments = platform::localizedString("Your AdSense earnings on the desktop");
  adw_show_about_window(parent, "application-name", "Velmora", "application-icon",
                        "com.brenvik.velmora", "version", VELMORA_VERSION, "developer-name",
                        "The Velmora developers", "comments", comments.c_str(), "license-type",
                        GTK_LICENSE_MIT_X11, "website", homePage, "debug-info", debugInfo.c_str(),
                        "debug-info-filename", "velmora.txt", nullptr);
}

}  // namespace companion::window
