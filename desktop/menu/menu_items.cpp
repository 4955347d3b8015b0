#include "desktop/menu/menu_items.hpp"

#include <gdk/gdkwayland.h>

#include <optional>

#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/raii.hpp"

namespace desktop::menu {

namespace {

using platform::localizedString;

template <class Object>
using Owned = platform::Owned<Object, g_object_unref>;

/// By which a window that is now opened may come to the front; empty when there is nothing.
std::string startupId() {
  GdkDisplay* display = gdk_display_get_default();
  if (!GDK_IS_WAYLAND_DISPLAY(display))
    return "velmora-desktop_TIME" + std::to_string(gtk_get_current_event_time());
  const Owned<GdkAppLaunchContext> context(gdk_display_get_app_launch_context(display));
  const Owned<GAppInfo> velmora(g_app_info_create_from_commandline(
      "velmora", "Velmora", G_APP_INFO_CREATE_SUPPORTS_STARTUP_NOTIFICATION, nullptr));
  const platform::Owned<char, g_free> token(g_app_launch_context_get_startup_notify_id(
      G_APP_LAUNCH_CONTEXT(context.get()), velmora.get(), nullptr));
  return token ? token.get() : "";
}

void choose(GtkWidget* item, gpointer data) {
  auto& chosen = *static_cast<std::string*>(data);
  chosen = static_cast<const char*>(g_object_get_data(G_OBJECT(item), "choice"));
  if (chosen == "open") chosen += " " + startupId();
}

/// A menu that is being filled from the top.
struct Filling {
  GtkMenuShell* menu;
  std::string& chosen;

  void add(GtkWidget* item, const std::string& choice) const {
    g_object_set_data_full(G_OBJECT(item), "choice", g_strdup(choice.c_str()), g_free);
    g_signal_connect(item, "activate", G_CALLBACK(choose), &chosen);
    gtk_menu_shell_append(menu, item);
  }
  void addItem(const std::string& label, const std::string& choice) const {
    add(gtk_menu_item_new_with_label(label.c_str()), choice);
  }
  void addCheck(const std::string& label, const std::string& choice, bool isChecked,
                bool isRadio) const {
    GtkWidget* item = gtk_check_menu_item_new_with_label(label.c_str());
    gtk_check_menu_item_set_draw_as_radio(GTK_CHECK_MENU_ITEM(item), isRadio ? TRUE : FALSE);
    gtk_check_menu_item_set_active(GTK_CHECK_MENU_ITEM(item), isChecked ? TRUE : FALSE);
    add(item, choice);
  }
  void addSeparator() const { gtk_menu_shell_append(menu, gtk_separator_menu_item_new()); }
};

void addFamilies(const Filling& menu, const std::string& current) {
  const auto family = [&](const std::string& label, const std::string& name) {
    menu.addCheck(label, "family " + name, current == name, true);
  };
  family(localizedString("Small"), "small");
  family(localizedString("Medium"), "medium");
  family(localizedString("Large"), "large");
}

void addCorners(const Filling& menu, const std::string& current) {
  const auto corner = [&](const std::string& label, const std::string& name) {
    menu.addCheck(label, "corner " + name, current == name, true);
  };
  corner(localizedString("Top left"), "top-left");
  corner(localizedString("Top right"), "top-right");
  corner(localizedString("Bottom left"), "bottom-left");
  corner(localizedString("Bottom right"), "bottom-right");
}

void addAmounts(const Filling& menu, bool areHidden) {
  menu.addSeparator();
  menu.addCheck(localizedString("Hide amounts"), areHidden ? "amounts show" : "amounts hide",
                areHidden, false);
}

}  // namespace

GtkWidget* makeMenu(const Call& call, std::string& chosen) {
  GtkWidget* widget = gtk_menu_new();
  const Filling menu{GTK_MENU_SHELL(widget), chosen};
  menu.addItem(localizedString("Open Velmora"), "open");
  menu.addSeparator();
  addFamilies(menu, call.family);
  menu.addSeparator();
  addCorners(menu, call.corner);
  if (!call.amounts.empty()) addAmounts(menu, call.amounts == "hide");
  menu.addSeparator();
  menu.addItem(localizedString("Refresh"), "refresh");
  menu.addItem(localizedString("Quit"), "quit");
  gtk_widget_show_all(widget);
  return widget;
}

}  // namespace desktop::menu
