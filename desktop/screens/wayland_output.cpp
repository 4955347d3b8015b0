#include "desktop/screens/wayland_output.hpp"

#include <algorithm>

namespace desktop {

namespace {

constexpr std::uint32_t newestVersion = 4;

WaylandOutput& self(void* data) { return *static_cast<WaylandOutput*>(data); }

bool isTurned(std::int32_t transform) {
  return transform == WL_OUTPUT_TRANSFORM_90 || transform == WL_OUTPUT_TRANSFORM_270 ||
         transform == WL_OUTPUT_TRANSFORM_FLIPPED_90 ||
         transform == WL_OUTPUT_TRANSFORM_FLIPPED_270;
}

}  // namespace

const wl_output_listener WaylandOutput::outputListener{
    .geometry = [](void* data, wl_output*, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                   std::int32_t, const char*, const char*,
                   std::int32_t transform) { self(data).transform_ = transform; },
    .mode =
        [](void* data, wl_output*, std::uint32_t flags, std::int32_t width, std::int32_t height,
           std::int32_t) {
          if ((flags & WL_OUTPUT_MODE_CURRENT) != 0) self(data).mode_ = {width, height};
        },
    .done =
        [](void* data, wl_output*) {
          self(data).isKnown_ = true;
          self(data).changed_();
        },
    .scale = [](void* data, wl_output*,
                std::int32_t scale) { self(data).wholeScale_ = std::max(1, scale); },
    .name = [](void* data, wl_output*, const char* name) { self(data).monitor_.name = name; },
    .description = [](void*, wl_output*, const char*) {}};

const zxdg_output_v1_listener WaylandOutput::logicalListener{
    .logical_position =
        [](void* data, zxdg_output_v1*, std::int32_t x, std::int32_t y) {
          self(data).monitor_.area.x = x;
          self(data).monitor_.area.y = y;
        },
    .logical_size =
        [](void* data, zxdg_output_v1*, std::int32_t width, std::int32_t height) {
          self(data).monitor_.area.width = width;
          self(data).monitor_.area.height = height;
        },
    .done = [](void* data, zxdg_output_v1*) { self(data).changed_(); },
    .name = [](void*, zxdg_output_v1*, const char*) {},
    .description = [](void*, zxdg_output_v1*, const char*) {}};

WaylandOutput::WaylandOutput(wl_registry* registry, std::uint32_t number, std::uint32_t version,
                             std::function<void()> changed)
    : number_(number),
      changed_(std::move(changed)),
      output_(static_cast<wl_output*>(wl_registry_bind(registry, number, &wl_output_interface,
                                                       std::min(version, newestVersion)))) {
  wl_output_add_listener(output_.get(), &outputListener, this);
}

void WaylandOutput::askLogicalSize(zxdg_output_manager_v1* manager) {
  if (manager == nullptr || logical_) return;
  logical_.reset(zxdg_output_manager_v1_get_xdg_output(manager, output_.get()));
  zxdg_output_v1_add_listener(logical_.get(), &logicalListener, this);
}

Scale WaylandOutput::scale(bool fractional) const {
  const Extent points{monitor_.area.width, monitor_.area.height};
  if (!fractional || points.width <= 0 || points.height <= 0) return scaleOf(wholeScale_);
  const Extent mode = isTurned(transform_) ? Extent{mode_.height, mode_.width} : mode_;
  return deducedScale(mode, points, wholeScale_);
}

}  // namespace desktop
