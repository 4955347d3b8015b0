#include "desktop/screens/wayland_drag.hpp"

#include <cmath>

#include "desktop/screens/monitors.hpp"

namespace desktop {

void WaylandDrag::move(PointerPlace place) {
  place_ = place;
  if (phase_ == Phase::pressed && isDrag(place.x - pressedAt_.x, place.y - pressedAt_.y))
    phase_ = Phase::moving;
}

bool WaylandDrag::release() {
  if (phase_ == Phase::pressed) phase_ = Phase::over;
  if (phase_ == Phase::moving) phase_ = Phase::released;
  return phase_ == Phase::released;
}

void WaylandDrag::proceed(const WaylandDisplay& display, const DragSubject& subject) {
  if (phase_ == Phase::landing && !subject.surface->awaitsFrame()) phase_ = Phase::over;
  if (phase_ != Phase::moving && phase_ != Phase::released) return;
  if (!origin_) origin_ = subject.origin;
  target_ = {origin_->x + static_cast<int>(std::lround(place_.x - pressedAt_.x)),
             origin_->y + static_cast<int>(std::lround(place_.y - pressedAt_.y))};
  if (phase_ == Phase::moving) showShadow(display, subject);
}

void WaylandDrag::showShadow(const WaylandDisplay& display, const DragSubject& subject) {
  if (!shadow_ || shadow_->isClosed()) {
    shadow_ = std::make_unique<WaylandSurface>(display, *subject.output,
                                               WaylandSurface::Kind::shadow, subject.size);
  } else if (!shadow_->configured() || shadow_->awaitsFrame()) {
    return;
  } else if (!shadow_->hasPicture()) {
    shadow_->setPicture(subject.picture, subject.size, subject.scale);
    shadow_->askFrame();
  } else {
    hideSurface(display, subject);
    if (shadowAt_ == target_) return;
    shadow_->askFrame();
  }
  shadowAt_ = target_;
  shadow_->setPlace({Corner::topLeft, target_});
  shadow_->commit();
}

/// Once its shadow is seen.
void WaylandDrag::hideSurface(const WaylandDisplay& display, const DragSubject& subject) {
  if (transparent_) return;
  transparent_ = makeTransparentBuffer(display.sharedMemory());
  subject.surface->setPicture(transparent_.get(), subject.size, {});
  subject.surface->commit();
}

}  // namespace desktop
