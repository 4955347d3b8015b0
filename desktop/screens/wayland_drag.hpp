#pragma once

#include <memory>

#include "desktop/screens/input_event.hpp"
#include "desktop/screens/wayland_surface.hpp"

namespace desktop {

/// A press on the widget, and what may become of it: dragging. Compositors do not agree on where
/// the pointer is while the surface under it moves. So that one stays where it was pressed,
/// transparent, and a shadow of it, which the pointer goes through, moves instead. It touches no
/// other surface: with it, all that was done for it is gone.
class WaylandDrag {
 public:
  /// `origin` is where the widget stands in the free area, in points.
  WaylandDrag(PointerPlace pressedAt, Point origin) : pressedAt_(pressedAt), origin_(origin) {}

  void move(PointerPlace place);
  /// Whether this is a drag, and not yet a click.
  [[nodiscard]] bool isMoving() const { return isMoving_; }
  /// Where the widget is dragged to, in the free area.
  [[nodiscard]] Point target() const { return {origin_.x + offset_.x, origin_.y + offset_.y}; }
  /// Has the shadow of what the widget shows follow the pointer, a step for each frame.
  void moveShadow(const WaylandDisplay& display, const WaylandOutput& output,
                  const SurfaceState& widget);
  /// From then on the widget's own surface is to be transparent.
  [[nodiscard]] bool isShadowSeen() const { return shadow_ && shadow_->isSeen(); }
  [[nodiscard]] bool isShadowClosed() const { return shadow_ && shadow_->isClosed(); }
  /// Hands over the shadow, which may be null, to stand in until the widget is seen again.
  std::unique_ptr<WaylandSurface> takeShadow() { return std::move(shadow_); }

 private:
  PointerPlace pressedAt_;
  Point origin_;
  Point offset_;
  bool isMoving_ = false;
  std::unique_ptr<WaylandSurface> shadow_;
};

}  // namespace desktop
