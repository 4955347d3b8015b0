#include "desktop/menu/menu_pop_up.hpp"

#include <gtk-layer-shell.h>

#include <utility>

namespace desktop::menu {

namespace {

gboolean leave(gpointer) {
  gtk_main_quit();
  return G_SOURCE_REMOVE;
}

void popUpAt(const PopUp& popUp, GdkWindow* window, int x, int y) {
  GdkSeat* seat = gdk_display_get_default_seat(gdk_display_get_default());
  GdkEvent* event = gdk_event_new(GDK_BUTTON_PRESS);
  event->button.window = GDK_WINDOW(g_object_ref(window));
  event->button.time = GDK_CURRENT_TIME;
  gdk_event_set_device(event, gdk_seat_get_pointer(seat));
  const GdkRectangle at{x, y, 1, 1};
  gtk_menu_popup_at_rect(GTK_MENU(popUp.menu), window, &at, GDK_GRAVITY_SOUTH_EAST,
                         GDK_GRAVITY_NORTH_WEST, event);
  gdk_event_free(event);
}

/// Until the pointer can be grabbed, which somebody else may hold for a moment.
gboolean popUpOnX11(gpointer data) {
  constexpr int mostTries = 100;
  static int tries = 0;
  const auto& popUp = *static_cast<PopUp*>(data);
  GdkWindow* root = gdk_screen_get_root_window(gdk_screen_get_default());
  const int scale = gdk_window_get_scale_factor(root);
  popUpAt(popUp, root, popUp.call.at[0] / scale, popUp.call.at[1] / scale);
  if (gtk_widget_get_visible(popUp.menu) != FALSE) return G_SOURCE_REMOVE;
  if (++tries == mostTries) gtk_main_quit();
  return G_SOURCE_CONTINUE;
}

/// GTK knows no names of outputs, but their places. Null, by which the compositor chooses, when no
/// output is there.
GdkMonitor* monitorAt(const std::vector<int>& place) {
  GdkDisplay* display = gdk_display_get_default();
  for (int i = 0; place.size() == 4 && i < gdk_display_get_n_monitors(display); ++i) {
    GdkMonitor* monitor = gdk_display_get_monitor(display, i);
    GdkRectangle area{};
    gdk_monitor_get_geometry(monitor, &area);
    if (place == std::vector<int>{area.x, area.y, area.width, area.height}) return monitor;
  }
  return nullptr;
}

gboolean popUpOnLayer(gpointer data) {
  const auto& popUp = *static_cast<PopUp*>(data);
  popUpAt(popUp, gtk_widget_get_window(popUp.layer), popUp.call.at[0], popUp.call.at[1]);
  return G_SOURCE_REMOVE;
}

/// Clears the window, and opens the menu once there is a window for it to stand on.
gboolean drawLayer(GtkWidget*, cairo_t* context, gpointer data) {
  cairo_set_operator(context, CAIRO_OPERATOR_CLEAR);
  cairo_paint(context);
  static bool isFirst = true;
  if (std::exchange(isFirst, false)) g_idle_add(popUpOnLayer, data);
  return TRUE;
}

/// A transparent window over what panels leave free of the output, for clicks beside the menu; the
/// menu's place counts from its corner, as the widget's does.
void openLayer(PopUp& popUp) {
  popUp.layer = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  GtkWindow* window = GTK_WINDOW(popUp.layer);
  gtk_layer_init_for_window(window);
  gtk_layer_set_namespace(window, "velmora");
  gtk_layer_set_layer(window, GTK_LAYER_SHELL_LAYER_OVERLAY);
  if (GdkMonitor* monitor = monitorAt(popUp.call.output)) gtk_layer_set_monitor(window, monitor);
  for (const auto edge : {GTK_LAYER_SHELL_EDGE_LEFT, GTK_LAYER_SHELL_EDGE_RIGHT,
                          GTK_LAYER_SHELL_EDGE_TOP, GTK_LAYER_SHELL_EDGE_BOTTOM})
    gtk_layer_set_anchor(window, edge, TRUE);
  gtk_layer_set_keyboard_mode(window, GTK_LAYER_SHELL_KEYBOARD_MODE_EXCLUSIVE);
  gtk_widget_set_app_paintable(popUp.layer, TRUE);
  g_signal_connect(popUp.layer, "draw", G_CALLBACK(drawLayer), &popUp);
  g_signal_connect(popUp.layer, "button-press-event", G_CALLBACK(leave), nullptr);
  gtk_widget_show(popUp.layer);
}

}  // namespace

void show(PopUp& popUp) {
  // It is deactivated before its item is activated.
  g_signal_connect(popUp.menu, "deactivate",
                   G_CALLBACK(+[](GtkWidget*, gpointer) { g_idle_add(leave, nullptr); }), nullptr);
  if (popUp.call.isWayland()) {
    openLayer(popUp);
  } else if (popUpOnX11(&popUp) == G_SOURCE_CONTINUE) {
    constexpr unsigned interval = 20;  // milliseconds
    g_timeout_add(interval, popUpOnX11, &popUp);
  }
}

}  // namespace desktop::menu
