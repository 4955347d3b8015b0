#include "desktop/screens/wayland_surface.hpp"

#include <algorithm>

namespace desktop {

namespace {

using Region = WaylandOwned<wl_region>;

constexpr std::uint32_t keyboardSinceVersion = 4;

WaylandSurface& self(void* data) { return *static_cast<WaylandSurface*>(data); }

std::uint32_t length(int points) { return static_cast<std::uint32_t>(points); }

/// Such that sums of lengths stay numbers, whatever is told.
int points(std::uint32_t length) {
  constexpr std::uint32_t largestLength = 100'000;
  return static_cast<int>(std::min(length, largestLength));
}

/// A scale that no picture can have is brought to the nearest one that it can; none is no scale.
std::optional<Scale> scaleOf120ths(std::uint32_t scale) {
  if (scale == 0) return std::nullopt;
  return scaleOf(scale / 120.0);
}

}  // namespace

const layer_shell::SurfaceListener WaylandSurface::layerListener{
    .configure =
        [](void* data, zwlr_layer_surface_v1* layer, std::uint32_t serial, std::uint32_t width,
           std::uint32_t height) {
          layer_shell::acknowledge(layer, serial);
          self(data).configured_ = Extent{points(width), points(height)};
        },
    .closed = [](void* data, zwlr_layer_surface_v1*) { self(data).isClosed_ = true; }};

const wp_fractional_scale_v1_listener WaylandSurface::scaleListener{
    .preferred_scale = [](void* data, wp_fractional_scale_v1*, std::uint32_t scale) {
      if (const auto told = scaleOf120ths(scale)) self(data).preferredScale_ = told;
    }};

const wl_callback_listener WaylandSurface::frameListener{
    .done = [](void* data, wl_callback*, std::uint32_t) {
      self(data).frame_.reset();
      self(data).isSeen_ = true;
    }};

WaylandSurface::WaylandSurface(const WaylandDisplay& display, const WaylandOutput& output,
                               Kind kind, Extent size)
    : surface_(wl_compositor_create_surface(display.compositor())) {
  if (display.scaleTeller() != nullptr && kind == Kind::widget) {
    scaleTeller_.reset(
        wp_fractional_scale_manager_v1_get_fractional_scale(display.scaleTeller(), surface_.get()));
    wp_fractional_scale_v1_add_listener(scaleTeller_.get(), &scaleListener, this);
  }
  if (display.viewporter() != nullptr)
    viewport_.reset(wp_viewporter_get_viewport(display.viewporter(), surface_.get()));
  layer_.reset(layer_shell::getSurface(display.layerShell(), surface_.get(), output.handle(),
                                       layer_shell::bottomLayer, "velmora"));
  layer_shell::listen(layer_.get(), &layerListener, this);
  setSize(size);
  if (kind == Kind::probe)
    layer_shell::setAnchor(layer_.get(), layer_shell::top | layer_shell::bottom |
                                             layer_shell::left | layer_shell::right);
  layer_shell::setExclusiveZone(layer_.get(), 0);
  if (kind == Kind::widget &&
      wl_proxy_get_version(reinterpret_cast<wl_proxy*>(layer_.get())) >= keyboardSinceVersion)
    layer_shell::setKeyboard(layer_.get(), layer_shell::keyboardOnDemand);
  if (kind == Kind::shadow) {
    const Region nothing(wl_compositor_create_region(display.compositor()));
    wl_surface_set_input_region(surface_.get(), nothing.get());
  }
  wl_surface_commit(surface_.get());
}

WaylandSurface::~WaylandSurface() = default;

void WaylandSurface::setSize(Extent points) {
  layer_shell::setSize(layer_.get(), length(points.width), length(points.height));
}

void WaylandSurface::setPlace(const Anchorage& place) {
  const bool left = isLeft(place.corner);
  const bool top = isTop(place.corner);
  layer_shell::setAnchor(layer_.get(), (left ? layer_shell::left : layer_shell::right) |
                                           (top ? layer_shell::top : layer_shell::bottom));
  const auto [x, y] = place.margins;
  layer_shell::setMargin(layer_.get(), top ? y : 0, left ? 0 : x, top ? 0 : y, left ? x : 0);
}

void WaylandSurface::attach(const SurfaceState& wanted) {
  wl_surface_attach(surface_.get(), wanted.buffer.get(), 0, 0);
  damageWhole(surface_.get());
  if (viewport_) {
    wp_viewport_set_destination(viewport_.get(), wanted.size.width, wanted.size.height);
  } else if (wl_surface_get_version(surface_.get()) >= WL_SURFACE_SET_BUFFER_SCALE_SINCE_VERSION) {
    wl_surface_set_buffer_scale(surface_.get(), pixels(1, wanted.scale));
  }
}

void WaylandSurface::askFrame() {
  frame_.reset(wl_surface_frame(surface_.get()));
  wl_callback_add_listener(frame_.get(), &frameListener, this);
}

void WaylandSurface::show(const SurfaceState& wanted) {
  if (!configured_ || wanted == shown_) return;
  setSize(wanted.size);
  setPlace(wanted.place);
  if (wanted.buffer != shown_.buffer || wanted.size != shown_.size) attach(wanted);
  askFrame();
  wl_surface_commit(surface_.get());
  shown_ = wanted;  // by now the compositor is done with the former buffer
}

void damageWhole(wl_surface* surface) {
  wl_surface_get_version(surface) >= WL_SURFACE_DAMAGE_BUFFER_SINCE_VERSION
      ? wl_surface_damage_buffer(surface, 0, 0, INT32_MAX, INT32_MAX)
      : wl_surface_damage(surface, 0, 0, INT32_MAX, INT32_MAX);
}

bool takesBufferScale(wl_compositor* compositor) {
  return wl_compositor_get_version(compositor) >= WL_SURFACE_SET_BUFFER_SCALE_SINCE_VERSION;
}

}  // namespace desktop
