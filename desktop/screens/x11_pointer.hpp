#pragma once

#include <functional>
#include <optional>
#include <string>

#include "desktop/scale.hpp"
#include "desktop/screens/x11_window.hpp"

namespace desktop {

/// What the user did; places are in device pixels of the screen.
struct PointerActions {
  std::function<void(Point position)> moved;    ///< on the way
  std::function<void(Point position)> dragged;  ///< at its end
  std::function<void(const std::string& startup)> opened;
  std::function<void(Point at)> menuAsked;
};

/// Pointer and keyboard on an X11 window: a click, dragging, the menu, Return.
class X11Pointer {
 public:
  X11Pointer(const X11Display& display, const X11Window& window, PointerActions actions)
      : display_(display), window_(window), actions_(std::move(actions)) {}

  /// The scale tells how far a drag is.
  void handle(const xcb_generic_event_t& event, Scale scale);

 private:
  void press(const xcb_button_press_event_t& event);
  void move(const xcb_motion_notify_event_t& event, Scale scale);
  void release(const xcb_button_release_event_t& event);
  void key(xcb_key_press_event_t event);

  const X11Display& display_;
  const X11Window& window_;
  PointerActions actions_;
  std::optional<Point> pressedAt_;  // on the screen
  Point grabbedAt_;                 // from the window's corner
  bool isDragging_ = false;
};

}  // namespace desktop
