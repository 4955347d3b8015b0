#include "desktop/screens/wayland_drag.hpp"

#include <cmath>

#include "desktop/screens/monitors.hpp"

namespace desktop {

void WaylandDrag::move(PointerPlace place) {
  const double x = place.x - pressedAt_.x;
  const double y = place.y - pressedAt_.y;
  isMoving_ = isMoving_ || isDrag(x, y);
  offset_ = {static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y))};
}

void WaylandDrag::moveShadow(const WaylandDisplay& display, const WaylandOutput& output,
                             const SurfaceState& widget) {
  if (!isMoving_) return;
  if (!shadow_)
    shadow_ = std::make_unique<WaylandSurface>(display, output, WaylandSurface::Kind::shadow,
                                               widget.size);
  if (shadow_->awaitsFrame()) return;
  auto shadow = widget;
  shadow.place = {Corner::topLeft, target()};
  shadow_->show(shadow);
}

}  // namespace desktop
