#include <gtk/gtk.h>

#include "desktop/menu/menu_call.hpp"
#include "desktop/menu/menu_items.hpp"
#include "desktop/menu/menu_pop_up.hpp"
#include "platform/foundation/formatting.hpp"
#include "platform/foundation/languages.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/standard_streams.hpp"

// The widget's menu. Shows it at a place on the screen, prints what was chosen on one line, nothing
// when it was dismissed, and ends. velmora-desktop starts it.

namespace {

/// As the widget's own picture is laid out.
bool readsRightToLeft() {
  const auto languages = platform::preferredLanguages();
  return platform::isRightToLeft(languages.empty() ? platform::currentLocaleIdentifier()
                                                   : languages.front());
}

}  // namespace

int main(int argumentCount, char** arguments) {
  platform::occupyStandardStreams();
  desktop::menu::PopUp popUp;
  if (const auto status = desktop::menu::parseCall(argumentCount, arguments, popUp.call))
    return *status;
  g_setenv("GDK_GL", "disable", TRUE);  // no renderer of its own for a few lines of text
  gdk_set_allowed_backends(popUp.call.displayKind.c_str());
  gtk_disable_setlocale();
  if (!gtk_init_check(nullptr, nullptr)) {
    g_printerr("velmora-desktop-menu: no display can be opened\n");
    return 1;
  }
  if (readsRightToLeft()) gtk_widget_set_default_direction(GTK_TEXT_DIR_RTL);
  platform::loadStringTables();
  std::string chosen;
  popUp.menu = desktop::menu::makeMenu(popUp.call, chosen);
  desktop::menu::show(popUp);
  gtk_main();
  if (!chosen.empty()) g_print("%s\n", chosen.c_str());
  return 0;
}
