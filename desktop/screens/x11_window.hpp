#pragma once

#include <memory>

#include "desktop/screens/x11_picture.hpp"
#include "desktop/screens/x11_standing.hpp"

namespace desktop {

/// A window below all others, with a picture as its background; the X server repaints it.
class X11Window {
 public:
  X11Window(std::shared_ptr<const X11Display> display, const X11Visual& visual, Standing standing);
  ~X11Window();
  X11Window(const X11Window&) = delete;
  X11Window& operator=(const X11Window&) = delete;

  [[nodiscard]] xcb_window_t id() const { return window_; }
  [[nodiscard]] Extent size() const { return size_; }
  /// Makes the picture its background, in its own size at that place (device pixels of the screen).
  void show(const X11Picture& picture, Point position);
  /// Brings it onto the screen, once there is something to see.
  void map() const;
  /// Gives it the picture's shape, which it needs where nothing makes it transparent.
  void cut(const X11Picture& picture) const;
  /// Takes the shape away again.
  void uncut() const;
  /// Puts it there in its own size, whatever somebody else did to it.
  void moveTo(Point position) const;
  /// Where it really is: somebody else may have moved it.
  [[nodiscard]] Point position() const;
  /// Whether it is still there, neither unmapped nor made an icon.
  [[nodiscard]] bool isShown() const;
  /// Asks the window manager for the keyboard, at the time of a user's action.
  void takeFocus(xcb_timestamp_t time) const;

 private:
  void create(const X11Visual& visual);
  void setHints() const;
  void setNames() const;
  void setStanding(Standing standing);
  void fixSize() const;

  std::shared_ptr<const X11Display> display_;
  xcb_window_t window_;
  std::unique_ptr<X11DesktopMate> mate_;
  Extent size_{1, 1};
};

}  // namespace desktop
