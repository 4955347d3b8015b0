#include "desktop/widget_window.hpp"

#include <cmath>
#include <numbers>

#include "platform/foundation/raii.hpp"

namespace desktop {

namespace {

constexpr double cornerRadius = 20;

using Region = platform::Owned<cairo_region_t, cairo_region_destroy>;
using Context = platform::Owned<cairo_t, cairo_destroy>;

WidgetWindow& self(gpointer data) { return *static_cast<WidgetWindow*>(data); }

void roundedRectangle(cairo_t* context, double width, double height) {
  constexpr double quarter = std::numbers::pi / 2;
  const double r = cornerRadius;
  cairo_new_path(context);
  cairo_arc(context, width - r, r, r, -quarter, 0);
  cairo_arc(context, width - r, height - r, r, 0, quarter);
  cairo_arc(context, r, height - r, r, quarter, 2 * quarter);
  cairo_arc(context, r, r, r, 2 * quarter, 3 * quarter);
  cairo_close_path(context);
}

bool hasMonitor() { return gdk_display_get_n_monitors(gdk_display_get_default()) > 0; }

std::string joined(const std::vector<std::string>& phrases) {
  std::string text;
  for (const auto& phrase : phrases) text += (text.empty() ? "" : ". ") + phrase;
  return text;
}

struct MenuChoice {
  const char* label;
  const char* value;
};

constexpr MenuChoice families[] = {{"Small", "small"}, {"Medium", "medium"}, {"Large", "large"}};
constexpr MenuChoice cornerChoices[] = {{"Top left", "top-left"},
                                        {"Top right", "top-right"},
                                        {"Bottom left", "bottom-left"},
                                        {"Bottom right", "bottom-right"}};

}  // namespace

WidgetWindow::WidgetWindow(WindowActions actions)
    : actions_(std::move(actions)), window_(GTK_WINDOW(gtk_window_new(GTK_WINDOW_TOPLEVEL))) {
  gtk_window_set_title(window_, "Velmora");
  gtk_window_set_decorated(window_, FALSE);
  gtk_window_set_resizable(window_, FALSE);
  gtk_widget_set_app_paintable(GTK_WIDGET(window_), TRUE);
  GdkScreen* screen = gtk_widget_get_screen(GTK_WIDGET(window_));
  if (GdkVisual* visual = gdk_screen_get_rgba_visual(screen))
    gtk_widget_set_visual(GTK_WIDGET(window_), visual);
  gtk_widget_add_events(GTK_WIDGET(window_),
                        GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK | GDK_BUTTON1_MOTION_MASK);
  currentScreen().prepare(window_);
  connectSignals();
  gtk_widget_realize(GTK_WIDGET(window_));  // now, while the widget program draws
}

WidgetWindow::~WidgetWindow() {
  g_signal_handlers_disconnect_by_data(gtk_widget_get_screen(GTK_WIDGET(window_)), this);
  g_signal_handlers_disconnect_by_data(window_, this);
  if (menu_ != nullptr) gtk_widget_destroy(menu_);
  gtk_widget_destroy(GTK_WIDGET(window_));
}

void WidgetWindow::connectSignals() {
  const auto connect = [this](gpointer object, const char* signal, GCallback callback) {
    g_signal_connect(object, signal, callback, this);
  };
  connect(window_, "draw", G_CALLBACK(+[](GtkWidget*, cairo_t* context, gpointer data) -> gboolean {
            self(data).draw(context);
            return TRUE;
          }));
  connect(window_, "delete-event",
          G_CALLBACK(+[](GtkWidget*, GdkEvent*, gpointer data) -> gboolean {
            self(data).close();
            return TRUE;
          }));
  connect(window_, "button-press-event",
          G_CALLBACK(+[](GtkWidget*, GdkEventButton* event, gpointer data) -> gboolean {
            self(data).press(event);
            return TRUE;
          }));
  connect(window_, "motion-notify-event",
          G_CALLBACK(+[](GtkWidget*, GdkEventMotion* event, gpointer data) -> gboolean {
            self(data).drag(event);
            return TRUE;
          }));
  connect(window_, "button-release-event",
          G_CALLBACK(+[](GtkWidget*, GdkEventButton*, gpointer data) -> gboolean {
            self(data).release();
            return TRUE;
          }));
  connect(window_, "popup-menu", G_CALLBACK(+[](GtkWidget*, gpointer data) -> gboolean {
            self(data).popUpMenu(nullptr);
            return TRUE;
          }));
  connect(window_, "notify::scale-factor", G_CALLBACK(+[](GObject*, GParamSpec*, gpointer data) {
            self(data).actions_.screenChanged();
          }));
  GdkScreen* screen = gtk_widget_get_screen(GTK_WIDGET(window_));
  for (const char* signal : {"monitors-changed", "composited-changed"})
    connect(screen, signal,
            G_CALLBACK(+[](GdkScreen*, gpointer data) { self(data).actions_.screenChanged(); }));
}

void WidgetWindow::place(const Placement& placement) {
  placement_ = placement;
  const auto size = familySize(placement.family);
  gtk_widget_set_size_request(GTK_WIDGET(window_), size.width, size.height);
  gtk_window_resize(window_, size.width, size.height);
  currentScreen().place(window_, placement, findMonitor(placement.monitor));
  cutCorners();
}

int WidgetWindow::scale() const {
  if (gtk_widget_get_realized(GTK_WIDGET(window_)) != FALSE)
    return gtk_widget_get_scale_factor(GTK_WIDGET(window_));
  GdkMonitor* monitor = findMonitor(placement_.monitor);
  return monitor == nullptr ? 1 : gdk_monitor_get_scale_factor(monitor);
}

void WidgetWindow::show(Picture picture, int scale, const std::vector<std::string>& phrases) {
  picture_ = std::move(picture);
  pictureScale_ = scale;
  cairo_surface_set_device_scale(picture_.get(), scale, scale);
  AtkObject* accessible = gtk_widget_get_accessible(GTK_WIDGET(window_));
  atk_object_set_description(accessible, joined(phrases).c_str());
  atk_object_set_name(accessible, joined(phrases).c_str());
  if (gtk_widget_get_visible(GTK_WIDGET(window_)) == FALSE && hasMonitor()) {
    gtk_widget_show(GTK_WIDGET(window_));
    currentScreen().place(window_, placement_, findMonitor(placement_.monitor));
    cutCorners();
  }
  gtk_widget_queue_draw(GTK_WIDGET(window_));
}

void WidgetWindow::draw(cairo_t* context) const {
  cairo_set_operator(context, CAIRO_OPERATOR_SOURCE);
  // A picture of another scale would be blurred; the right one is on its way.
  if (picture_ && pictureScale_ == gtk_widget_get_scale_factor(GTK_WIDGET(window_))) {
    cairo_set_source_surface(context, picture_.get(), 0, 0);
  } else {
    cairo_set_source_rgba(context, 0, 0, 0, 0);
  }
  cairo_paint(context);
}

/// Without a compositor transparent corners would be black, so the window itself is cut.
void WidgetWindow::cutCorners() const {
  GdkScreen* screen = gtk_widget_get_screen(GTK_WIDGET(window_));
  if (!currentScreen().movable || gdk_screen_is_composited(screen) != FALSE) {
    gtk_widget_shape_combine_region(GTK_WIDGET(window_), nullptr);
    return;
  }
  const auto size = familySize(placement_.family);
  const Picture mask(cairo_image_surface_create(CAIRO_FORMAT_A1, size.width, size.height));
  {
    const Context context(cairo_create(mask.get()));
    roundedRectangle(context.get(), size.width, size.height);
    cairo_fill(context.get());
  }
  const Region region(gdk_cairo_region_create_from_surface(mask.get()));
  gtk_widget_shape_combine_region(GTK_WIDGET(window_), region.get());
}

void WidgetWindow::addMenuItem(GtkWidget* menu, const char* label, bool chosen,
                               std::function<void()> action) {
  GtkWidget* item = gtk_check_menu_item_new_with_label(label);
  gtk_check_menu_item_set_draw_as_radio(GTK_CHECK_MENU_ITEM(item), TRUE);
  gtk_check_menu_item_set_active(GTK_CHECK_MENU_ITEM(item), chosen);
  menuActions_.push_back(std::move(action));
  g_object_set_data(G_OBJECT(item), "action", GUINT_TO_POINTER(menuActions_.size()));
  g_signal_connect(item, "activate", G_CALLBACK(+[](GtkWidget* activated, gpointer data) {
                     const auto number =
                         GPOINTER_TO_UINT(g_object_get_data(G_OBJECT(activated), "action"));
                     const auto act = self(data).menuActions_.at(number - 1);
                     act();
                   }),
                   this);
  gtk_menu_shell_append(GTK_MENU_SHELL(menu), item);
}

GtkWidget* WidgetWindow::makeMenu() {
  menuActions_.clear();
  GtkWidget* menu = gtk_menu_new();
  const auto separate = [menu] {
    gtk_menu_shell_append(GTK_MENU_SHELL(menu), gtk_separator_menu_item_new());
  };
  for (const auto& [label, family] : families) {
    addMenuItem(menu, label, placement_.family == family,
                [this, family = family] { actions_.chooseFamily(family); });
  }
  separate();
  for (const auto& [label, name] : cornerChoices) {
    const auto corner = cornerFromName(name).value_or(Corner::topRight);
    const bool chosen = placement_.corner == corner && !placement_.moved;
    addMenuItem(menu, label, chosen, [this, corner] { actions_.chooseCorner(corner); });
  }
  separate();
  const auto addCommand = [&](const char* label, const std::function<void()>& action) {
    GtkWidget* item = gtk_menu_item_new_with_mnemonic(label);
    menuActions_.push_back(action);
    g_signal_connect(item, "activate", G_CALLBACK(+[](GtkWidget*, gpointer act) {
                       const auto copy = *static_cast<std::function<void()>*>(act);
                       copy();
                     }),
                     const_cast<std::function<void()>*>(&action));
    gtk_menu_shell_append(GTK_MENU_SHELL(menu), item);
  };
  addCommand("_Refresh", actions_.refresh);
  addCommand("_Quit", actions_.quit);
  gtk_menu_attach_to_widget(GTK_MENU(menu), GTK_WIDGET(window_), nullptr);
  gtk_widget_show_all(menu);
  return menu;
}

void WidgetWindow::popUpMenu(const GdkEvent* event) {
  if (menu_ != nullptr) gtk_widget_destroy(menu_);
  menu_ = makeMenu();
  if (event != nullptr) {
    gtk_menu_popup_at_pointer(GTK_MENU(menu_), event);
  } else {
    gtk_menu_popup_at_widget(GTK_MENU(menu_), GTK_WIDGET(window_), GDK_GRAVITY_CENTER,
                             GDK_GRAVITY_NORTH_WEST, nullptr);
    gtk_menu_shell_select_first(GTK_MENU_SHELL(menu_), FALSE);
  }
}

void WidgetWindow::press(const GdkEventButton* event) {
  const auto* any = reinterpret_cast<const GdkEvent*>(event);
  if (gdk_event_triggers_context_menu(any) != FALSE) {
    popUpMenu(any);
  } else if (event->button == GDK_BUTTON_PRIMARY && currentScreen().movable) {
    gtk_window_present_with_time(window_, event->time);  // so that its menu can be had by key
    dragging_ = false;
    grabbedAt_ = {static_cast<int>(event->x), static_cast<int>(event->y)};
  }
}

void WidgetWindow::drag(const GdkEventMotion* event) {
  if (!currentScreen().movable) return;
  const int x = static_cast<int>(event->x_root) - grabbedAt_.x;
  const int y = static_cast<int>(event->y_root) - grabbedAt_.y;
  if (!dragging_ &&
      gtk_drag_check_threshold(GTK_WIDGET(window_), grabbedAt_.x, grabbedAt_.y,
                               static_cast<int>(event->x), static_cast<int>(event->y)) == FALSE)
    return;
  dragging_ = true;
  gtk_window_move(window_, x, y);
}

void WidgetWindow::release() {
  if (!dragging_) return;
  dragging_ = false;
  int x = 0;
  int y = 0;
  gtk_window_get_position(window_, &x, &y);
  GdkDisplay* display = gtk_widget_get_display(GTK_WIDGET(window_));
  const auto size = familySize(placement_.family);
  GdkMonitor* monitor =
      gdk_display_get_monitor_at_point(display, x + size.width / 2, y + size.height / 2);
  const char* name = gdk_monitor_get_model(monitor);
  GdkRectangle area;
  gdk_monitor_get_workarea(monitor, &area);
  actions_.moved(name == nullptr ? "" : name, {x - area.x, y - area.y});
}

/// A user who closes the window wants it gone; a layer shell closes it when its output goes, and
/// then it comes back on another.
void WidgetWindow::close() {
  if (currentScreen().movable) {
    actions_.quit();
    return;
  }
  gtk_widget_hide(GTK_WIDGET(window_));
  if (hasMonitor()) actions_.screenChanged();  // else when one comes
}

}  // namespace desktop
