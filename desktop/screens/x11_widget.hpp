#pragma once

#include <memory>

#include "desktop/screens/retry_floor.hpp"
#include "desktop/screens/x11_pointer.hpp"

namespace desktop {

/// The widget on an X11 screen: its picture, and the window that shows it. A window that somebody
/// unmaps, makes an icon or destroys is replaced.
class X11Widget {
 public:
  X11Widget(std::shared_ptr<const X11Display> display, PointerActions actions);
  X11Widget(const X11Widget&) = delete;
  X11Widget& operator=(const X11Widget&) = delete;

  /// Shows the picture at that place; the X server keeps it.
  void show(cairo_surface_t* picture, Point position);
  /// Puts what is shown there, wherever it is now.
  void moveTo(Point position);
  /// With a compositor it is transparent, else cut to the picture's shape.
  void setComposited(bool composited);
  /// How the window is to ask for its place; it is opened anew for another way.
  void setStanding(Standing standing);
  /// Device pixels per point, which tell a click from a drag.
  void setScale(Scale scale) { scale_ = scale; }
  [[nodiscard]] Extent size() const { return picture_ ? picture_->size() : Extent{}; }
  /// Where it was put last.
  [[nodiscard]] Point place() const { return place_; }

  /// Takes any event.
  void handle(const xcb_generic_event_t& event);
  /// Replaces a window that has gone; after a round of events.
  void settle();

 private:
  void open();
  [[nodiscard]] bool isOwn(xcb_window_t window) const { return window_ && window_->id() == window; }
  void shape() const;
  void doubt(xcb_window_t window);

  std::shared_ptr<const X11Display> display_;
  PointerActions actions_;
  X11Visual visual_;
  Scale scale_;
  Standing standing_ = Standing::dock;
  bool isComposited_ = false;
  Point place_;
  std::unique_ptr<X11Picture> picture_;
  std::unique_ptr<X11Window> window_;    // null before there is a picture, and after it has gone
  std::unique_ptr<X11Pointer> pointer_;  // of that window
  bool hasAppeared_ = false;             // its state is told before that
  bool isInDoubt_ = false;               // whether it is still there
  RetryFloor floor_;
};

}  // namespace desktop
