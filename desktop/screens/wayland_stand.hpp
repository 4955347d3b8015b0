#pragma once

#include <memory>
#include <optional>

#include "desktop/screens/wayland_drag.hpp"
#include "desktop/screens/wayland_free_area.hpp"
#include "desktop/widget_program.hpp"

namespace desktop {

/// The picture that is to be seen.
struct Shown {
  WaylandBuffer buffer;
  Look look;
};

/// How a press ended.
struct Release {
  bool isClick = false;
  std::optional<Point> dropped;  ///< after a drag: where, in the free area
};

/// The widget on one output: its surface, what panels leave free there, and a drag of it. It ends
/// with the output, and everything with it. `settle` brings all in line with what is wanted, so
/// that nothing else depends on what happened in which order.
class WaylandStand {
 public:
  /// The size is in points.
  WaylandStand(const WaylandDisplay& display, const WaylandOutput& output, Extent size);

  /// The number of its output.
  [[nodiscard]] std::uint32_t output() const { return output_; }
  /// The compositor took it away.
  [[nodiscard]] bool isClosed() const { return surface_.isClosed() || freeArea_.isClosed(); }
  [[nodiscard]] bool isSeen() const { return surface_.isSeen(); }
  [[nodiscard]] wl_surface* surface() const { return surface_.handle(); }
  /// Absent until it is known.
  [[nodiscard]] std::optional<Scale> scale(const WaylandOutput& output) const;
  /// The top left corner in the free area.
  [[nodiscard]] Point origin() const;

  // What the pointer does.
  void press(PointerPlace place) { drag_.emplace(place, origin()); }
  void move(PointerPlace place);
  Release release();
  /// The widget goes back to where it was.
  void interrupt() { drag_.reset(); }

  void settle(const WaylandOutput& output, const Placement& placement, const Shown& shown);

 private:
  /// Whether the widget is seen under the pointer, and not in its place.
  bool showsDrag(const WaylandOutput& output, const SurfaceState& widget);

  const WaylandDisplay& display_;
  std::uint32_t output_;
  WaylandFreeArea freeArea_;
  Extent size_;
  Anchorage place_;
  std::optional<WaylandDrag> drag_;
  std::unique_ptr<WaylandSurface> landing_;  // a dropped shadow, until the widget is seen there
  WaylandBuffer transparent_;                // while the widget is dragged
  WaylandSurface surface_;
};

}  // namespace desktop
