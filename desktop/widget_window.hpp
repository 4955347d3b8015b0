#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>
#include <vector>

#include "desktop/placement.hpp"
#include "desktop/screen.hpp"
#include "desktop/widget_answer.hpp"

namespace desktop {

/// What the user can do with the window.
struct WindowActions {
  std::function<void(const std::string& family)> chooseFamily;
  std::function<void(Corner corner)> chooseCorner;
  /// Dragged to there: the monitor's name (empty when unknown), and from its work area's top left.
  std::function<void(const std::string& monitor, Point position)> moved;
  std::function<void()> refresh;
  std::function<void()> quit;
  /// The screen's scale or the set of monitors has changed.
  std::function<void()> screenChanged;
};

/// The window that shows the widget's picture.
class WidgetWindow {
 public:
  explicit WidgetWindow(WindowActions actions);
  ~WidgetWindow();
  WidgetWindow(const WidgetWindow&) = delete;
  WidgetWindow& operator=(const WidgetWindow&) = delete;

  /// Sizes the window and puts it where the placement says. It is shown with its first picture.
  void place(const Placement& placement);
  /// Shows a picture of that scale, and says the phrases to assistive technologies.
  void show(Picture picture, int scale, const std::vector<std::string>& phrases);
  /// Device pixels per point of the monitor it stands on.
  [[nodiscard]] int scale() const;

 private:
  void connectSignals();
  void draw(cairo_t* context) const;
  void cutCorners() const;
  void popUpMenu(const GdkEvent* event);
  [[nodiscard]] GtkWidget* makeMenu();
  void addMenuItem(GtkWidget* menu, const char* label, bool chosen, std::function<void()> action);
  void press(const GdkEventButton* event);
  void drag(const GdkEventMotion* event);
  void release();
  void close();

  WindowActions actions_;
  GtkWindow* window_;
  GtkWidget* menu_ = nullptr;
  std::vector<std::function<void()>> menuActions_;
  Placement placement_;
  Picture picture_;
  int pictureScale_ = 0;
  bool dragging_ = false;
  Point grabbedAt_;  // from the window's corner
};

}  // namespace desktop
