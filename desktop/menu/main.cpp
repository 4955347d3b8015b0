#include <CLI/CLI.hpp>
#include <gdk/gdkwayland.h>
#include <gtk-layer-shell.h>
#include <gtk/gtk.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/formatting.hpp"
#include "platform/foundation/languages.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/raii.hpp"

// The widget's menu. Shows it at a place on the screen, prints what was chosen on one line
// ("family large", "corner top-left", "refresh", "open" with what lets a window come to the front,
// "quit"; nothing when it was dismissed), and ends. velmora-desktop starts it.

namespace {

using platform::localizedString;

template <class Object>
using Owned = platform::Owned<Object, g_object_unref>;

struct Call {
  std::string displayKind = "x11";
  std::vector<int> at{0, 0};
  std::string output;  // a Wayland output's name
  std::string family;
  std::string corner;  // empty after the widget was dragged
};

struct Menu {
  Call call;
  GtkWidget* menu = nullptr;
  GtkWidget* window = nullptr;  // on Wayland
  std::string chosen;
};

/// As the widget's own picture is laid out.
bool readsRightToLeft() {
  const auto languages = platform::preferredLanguages();
  return platform::isRightToLeft(languages.empty() ? platform::currentLocaleIdentifier()
                                                   : languages.front());
}

gboolean leave(gpointer) {
  gtk_main_quit();
  return G_SOURCE_REMOVE;
}

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
  auto& chosen = static_cast<Menu*>(data)->chosen;
  chosen = static_cast<const char*>(g_object_get_data(G_OBJECT(item), "choice"));
  if (chosen == "open") chosen += " " + startupId();
}

void addItem(Menu& menu, const std::string& label, const std::string& choice,
             std::optional<bool> isCurrent = std::nullopt) {
  GtkWidget* item = isCurrent ? gtk_check_menu_item_new_with_label(label.c_str())
                              : gtk_menu_item_new_with_label(label.c_str());
  if (isCurrent) {
    gtk_check_menu_item_set_draw_as_radio(GTK_CHECK_MENU_ITEM(item), TRUE);
    gtk_check_menu_item_set_active(GTK_CHECK_MENU_ITEM(item), *isCurrent);
  }
  g_object_set_data_full(G_OBJECT(item), "choice", g_strdup(choice.c_str()), g_free);
  g_signal_connect(item, "activate", G_CALLBACK(choose), &menu);
  gtk_menu_shell_append(GTK_MENU_SHELL(menu.menu), item);
}

void addSeparator(const Menu& menu) {
  gtk_menu_shell_append(GTK_MENU_SHELL(menu.menu), gtk_separator_menu_item_new());
}

void fill(Menu& menu) {
  const auto family = [&](const std::string& label, const std::string& name) {
    addItem(menu, label, "family " + name, menu.call.family == name);
  };
  const auto corner = [&](const std::string& label, const std::string& name) {
    addItem(menu, label, "corner " + name, menu.call.corner == name);
  };
  addItem(menu, localizedString("Open Velmora"), "open");
  addSeparator(menu);
  family(localizedString("Small"), "small");
  family(localizedString("Medium"), "medium");
  family(localizedString("Large"), "large");
  addSeparator(menu);
  corner(localizedString("Top left"), "top-left");
  corner(localizedString("Top right"), "top-right");
  corner(localizedString("Bottom left"), "bottom-left");
  corner(localizedString("Bottom right"), "bottom-right");
  addSeparator(menu);
  addItem(menu, localizedString("Refresh"), "refresh");
  addItem(menu, localizedString("Quit"), "quit");
}

void popUp(Menu& menu, GdkWindow* window, int x, int y) {
  GdkSeat* seat = gdk_display_get_default_seat(gdk_display_get_default());
  GdkEvent* event = gdk_event_new(GDK_BUTTON_PRESS);
  event->button.window = GDK_WINDOW(g_object_ref(window));
  event->button.time = GDK_CURRENT_TIME;
  gdk_event_set_device(event, gdk_seat_get_pointer(seat));
  const GdkRectangle at{x, y, 1, 1};
  gtk_menu_popup_at_rect(GTK_MENU(menu.menu), window, &at, GDK_GRAVITY_SOUTH_EAST,
                         GDK_GRAVITY_NORTH_WEST, event);
  gdk_event_free(event);
}

/// Until the pointer can be grabbed, which somebody else may hold for a moment.
gboolean popUpOnX11(gpointer data) {
  constexpr int mostTries = 100;
  static int tries = 0;
  auto& menu = *static_cast<Menu*>(data);
  GdkWindow* root = gdk_screen_get_root_window(gdk_screen_get_default());
  const int scale = gdk_window_get_scale_factor(root);
  popUp(menu, root, menu.call.at[0] / scale, menu.call.at[1] / scale);
  if (gtk_widget_get_visible(menu.menu) != FALSE) return G_SOURCE_REMOVE;
  if (++tries == mostTries) gtk_main_quit();
  return G_SOURCE_CONTINUE;
}

GdkMonitor* monitorOf(const std::string& output) {
  GdkDisplay* display = gdk_display_get_default();
  for (int i = 0; i < gdk_display_get_n_monitors(display); ++i) {
    GdkMonitor* monitor = gdk_display_get_monitor(display, i);
    const char* model = gdk_monitor_get_model(monitor);
    if (model != nullptr && output == model) return monitor;
  }
  return nullptr;
}

/// A transparent window over the whole output, for the menu to stand on and for clicks beside it.
void openLayer(Menu& menu) {
  menu.window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  GtkWindow* window = GTK_WINDOW(menu.window);
  gtk_layer_init_for_window(window);
  gtk_layer_set_namespace(window, "velmora");
  gtk_layer_set_layer(window, GTK_LAYER_SHELL_LAYER_OVERLAY);
  if (GdkMonitor* monitor = monitorOf(menu.call.output)) gtk_layer_set_monitor(window, monitor);
  for (const auto edge : {GTK_LAYER_SHELL_EDGE_LEFT, GTK_LAYER_SHELL_EDGE_RIGHT,
                          GTK_LAYER_SHELL_EDGE_TOP, GTK_LAYER_SHELL_EDGE_BOTTOM})
    gtk_layer_set_anchor(window, edge, TRUE);
  gtk_layer_set_keyboard_mode(window, GTK_LAYER_SHELL_KEYBOARD_MODE_EXCLUSIVE);
  gtk_widget_set_app_paintable(menu.window, TRUE);
  g_signal_connect(
      menu.window, "draw", G_CALLBACK(+[](GtkWidget*, cairo_t* context, gpointer data) -> gboolean {
        cairo_set_operator(context, CAIRO_OPERATOR_CLEAR);
        cairo_paint(context);
        static bool isFirst = true;
        if (std::exchange(isFirst, false))
          g_idle_add(
              +[](gpointer shown) -> gboolean {
                auto& self = *static_cast<Menu*>(shown);
                popUp(self, gtk_widget_get_window(self.window), self.call.at[0], self.call.at[1]);
                return G_SOURCE_REMOVE;
              },
              data);
        return TRUE;
      }),
      &menu);
  g_signal_connect(menu.window, "button-press-event", G_CALLBACK(leave), nullptr);
  gtk_widget_show(menu.window);
}

void show(Menu& menu) {
  menu.menu = gtk_menu_new();
  fill(menu);
  gtk_widget_show_all(menu.menu);
  // It is deactivated before its item is activated.
  g_signal_connect(menu.menu, "deactivate",
                   G_CALLBACK(+[](GtkWidget*, gpointer) { g_idle_add(leave, nullptr); }), nullptr);
  if (menu.call.displayKind == "wayland") {
    openLayer(menu);
  } else if (popUpOnX11(&menu) == G_SOURCE_CONTINUE) {
    constexpr unsigned interval = 20;  // milliseconds
    g_timeout_add(interval, popUpOnX11, &menu);
  }
}

}  // namespace

int main(int argumentCount, char** arguments) {
  Menu menu;
  CLI::App app("The menu of velmora-desktop, which starts this program.", "velmora-desktop-menu");
  app.add_option("--display-kind", menu.call.displayKind, "x11 or wayland");
  app.add_option("--at", menu.call.at, "where its corner is, X and Y")->expected(2);
  app.add_option("--output", menu.call.output, "the Wayland output");
  app.add_option("--family", menu.call.family, "the widget's size");
  app.add_option("--corner", menu.call.corner, "the widget's corner");
  CLI11_PARSE(app, argumentCount, arguments);
  g_setenv("GDK_GL", "disable", TRUE);  // no renderer of its own for a few lines of text
  gdk_set_allowed_backends(menu.call.displayKind.c_str());
  gtk_disable_setlocale();
  if (!gtk_init_check(nullptr, nullptr)) {
    g_printerr("velmora-desktop-menu: no display can be opened\n");
    return 1;
  }
  if (readsRightToLeft()) gtk_widget_set_default_direction(GTK_TEXT_DIR_RTL);
  platform::loadStringTables();
  show(menu);
  gtk_main();
  if (!menu.chosen.empty()) g_print("%s\n", menu.chosen.c_str());
  return 0;
}
