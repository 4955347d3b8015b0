#include "desktop/screens/wayland_surface.hpp"

namespace desktop {

namespace {

using Region = WaylandOwned<wl_region>;

constexpr std::uint32_t keyboardSinceVersion = 4;

WaylandSurface& self(void* data) { return *static_cast<WaylandSurface*>(data); }

std::uint32_t length(int points) { return static_cast<std::uint32_t>(points); }

}  // namespace

const layer_shell::SurfaceListener WaylandSurface::layerListener{
    .configure =
        [](void* data, zwlr_layer_surface_v1* layer, std::uint32_t serial, std::uint32_t width,
           std::uint32_t height) {
          layer_shell::acknowledge(layer, serial);
          self(data).configured_ = Extent{static_cast<int>(width), static_cast<int>(height)};
        },
    .closed = [](void* data, zwlr_layer_surface_v1*) { self(data).isClosed_ = true; }};

const wp_fractional_scale_v1_listener WaylandSurface::scaleListener{
    .preferred_scale = [](void* data, wp_fractional_scale_v1*, std::uint32_t scale) {
      self(data).preferredScale_ = Scale{static_cast<int>(scale)};
    }};

const wl_callback_listener WaylandSurface::frameListener{
    .done = [](void* data, wl_callback*, std::uint32_t) { self(data).frame_.reset(); }};

WaylandSurface::WaylandSurface(const WaylandDisplay& display, const WaylandOutput& output,
                               Kind kind, Extent size)
    : display_(display), surface_(wl_compositor_create_surface(display.compositor())) {
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

void WaylandSurface::setPicture(wl_buffer* buffer, Extent points, Scale scale) {
  wl_surface_attach(surface_.get(), buffer, 0, 0);
  wl_surface_damage_buffer(surface_.get(), 0, 0, INT32_MAX, INT32_MAX);
  if (viewport_) {
    wp_viewport_set_destination(viewport_.get(), points.width, points.height);
  } else {
    wl_surface_set_buffer_scale(surface_.get(), pixels(1, scale));
  }
  hasPicture_ = true;
}

void WaylandSurface::askFrame() {
  frame_.reset(wl_surface_frame(surface_.get()));
  wl_callback_add_listener(frame_.get(), &frameListener, this);
}

void WaylandSurface::commit() { wl_surface_commit(surface_.get()); }

}  // namespace desktop
