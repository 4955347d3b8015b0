#include "desktop/screens/wayland_free_area.hpp"

namespace desktop {

namespace {

std::unique_ptr<WaylandSurface> makeProbe(const WaylandDisplay& display,
                                          const WaylandOutput& output) {
  return std::make_unique<WaylandSurface>(display, output, WaylandSurface::Kind::probe, Extent{});
}

}  // namespace

WaylandFreeArea::WaylandFreeArea(const WaylandDisplay& display, const WaylandOutput& output)
    : display_(display), shape_(output.shape()), probe_(makeProbe(display, output)) {}

std::optional<Extent> WaylandFreeArea::size() const {
  const auto told = probe_->configured();
  if (!told) return former_;
  // A length of 0 is left to the surface.
  return Extent{told->width > 0 ? told->width : shape_.area.width,
                told->height > 0 ? told->height : shape_.area.height};
}

void WaylandFreeArea::follow(const WaylandOutput& output) {
  if (shape_ == output.shape() || !probe_->configured()) return;
  former_ = size();
  shape_ = output.shape();
  probe_ = makeProbe(display_, output);
}

}  // namespace desktop
