#pragma once

#include <memory>

#include "desktop/geometry.hpp"
#include "desktop/screens/x11_display.hpp"
#include "desktop/widget_answer.hpp"

namespace desktop {

/// A window below all others, with a picture as its background; the X server keeps that and
/// repaints it.
class X11Window {
 public:
  /// `transparent` needs a compositor; without one the window has the picture's shape.
  X11Window(std::shared_ptr<const X11Display> display, bool transparent);
  ~X11Window();
  X11Window(const X11Window&) = delete;
  X11Window& operator=(const X11Window&) = delete;

  [[nodiscard]] xcb_window_t id() const { return window_; }
  [[nodiscard]] Extent size() const { return {area_.width, area_.height}; }
  [[nodiscard]] Point position() const { return {area_.x, area_.y}; }
  /// Moves it there and shows the picture in its own size.
  void show(cairo_surface_t* picture, Point position);
  void moveTo(Point position);
  /// Asks the window manager for the keyboard, at the time of a user's action.
  void takeFocus(xcb_timestamp_t time) const;

 private:
  void create();
  void setHints() const;
  void fixSize() const;
  void paint(cairo_surface_t* picture) const;

  std::shared_ptr<const X11Display> display_;
  bool transparent_;
  bool isMapped_ = false;
  xcb_visualtype_t* visual_ = nullptr;
  std::uint8_t depth_ = 0;
  xcb_colormap_t colormap_ = XCB_NONE;
  xcb_window_t window_ = XCB_NONE;
  Area area_{0, 0, 1, 1};  // device pixels
};

}  // namespace desktop
