#pragma once

#include <cairo.h>

#include <memory>
#include <vector>

#include "desktop/geometry.hpp"
#include "desktop/screens/x11_visual.hpp"

namespace desktop {

/// A picture in the X server's memory: it outlives the window that shows it, and costs the host
/// next to nothing.
class X11Picture {
 public:
  X11Picture(std::shared_ptr<const X11Display> display, const X11Visual& visual,
             cairo_surface_t* picture);
  ~X11Picture();
  X11Picture(const X11Picture&) = delete;
  X11Picture& operator=(const X11Picture&) = delete;

  [[nodiscard]] xcb_pixmap_t pixmap() const { return pixmap_; }
  [[nodiscard]] Extent size() const { return size_; }
  /// What is more opaque than not, from the top.
  [[nodiscard]] const std::vector<xcb_rectangle_t>& shape() const { return shape_; }

 private:
  void paint(const X11Visual& visual, cairo_surface_t* picture) const;

  std::shared_ptr<const X11Display> display_;
  Extent size_;  // device pixels
  xcb_pixmap_t pixmap_;
  std::vector<xcb_rectangle_t> shape_;
};

}  // namespace desktop
