#include "desktop/screens/wayland_stand.hpp"

namespace desktop {

WaylandStand::WaylandStand(const WaylandDisplay& display, const WaylandOutput& output, Extent size)
    : display_(display),
      output_(output.number()),
      freeArea_(display, output),
      size_(size),
      surface_(display, output, WaylandSurface::Kind::widget, size) {}

std::optional<Scale> WaylandStand::scale(const WaylandOutput& output) const {
  if (!surface_.configured()) return std::nullopt;
  if (surface_.preferredScale()) return surface_.preferredScale();
  const bool fractional = display_.viewporter() != nullptr;
  return fractional || takesBufferScale(display_.compositor()) ? output.scale(fractional) : Scale{};
}

Point WaylandStand::origin() const {
  return desktop::origin(place_, size_, freeArea_.size().value_or(Extent{}));
}

void WaylandStand::move(PointerPlace place) {
  // Without a viewport the surface cannot be made transparent in its place.
  if (drag_ && display_.viewporter() != nullptr) drag_->move(place);
}

Release WaylandStand::release() {
  if (!drag_) return {};
  Release release{!drag_->isMoving(), std::nullopt};
  if (drag_->isMoving()) {
    release.dropped = drag_->target();
    landing_ = drag_->takeShadow();
  }
  drag_.reset();
  return release;
}

void WaylandStand::settle(const WaylandOutput& output, const Placement& placement,
                          const Shown& shown) {
  freeArea_.follow(output);
  const auto area = freeArea_.size();
  if (!area || !surface_.configured()) return;
  size_ = sizeInPoints(shown.look.family);
  place_ = anchorage(placement, size_, *area);
  const SurfaceState widget{place_, size_, shown.buffer, shown.look.scale};
  if (!showsDrag(output, widget)) {
    transparent_.reset();
  } else if (!transparent_) {
    transparent_ = makeTransparentBuffer(display_.sharedMemory());
  }
  surface_.show(transparent_ ? SurfaceState{place_, size_, transparent_, {}} : widget);
  if (!surface_.awaitsFrame()) landing_.reset();
}

bool WaylandStand::showsDrag(const WaylandOutput& output, const SurfaceState& widget) {
  if (!drag_) return false;
  drag_->moveShadow(display_, output, widget);
  if (drag_->isShadowClosed()) {
    drag_.reset();
    return false;
  }
  return drag_->isShadowSeen();
}

}  // namespace desktop
