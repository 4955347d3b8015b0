#include "desktop/screens/wayland_output.hpp"

#include <algorithm>

namespace desktop {

namespace {

constexpr std::uint32_t newestVersion = 4;
constexpr std::int32_t largestLength = 100'000;

WaylandOutput& self(void* data) { return *static_cast<WaylandOutput*>(data); }

/// Such that sums and ratios of lengths stay numbers, whatever is told.
int bounded(std::int32_t length) { return std::clamp(length, -largestLength, largestLength); }

bool isTurned(std::int32_t transform) {
  return transform == WL_OUTPUT_TRANSFORM_90 || transform == WL_OUTPUT_TRANSFORM_270 ||
         transform == WL_OUTPUT_TRANSFORM_FLIPPED_90 ||
         transform == WL_OUTPUT_TRANSFORM_FLIPPED_270;
}

}  // namespace

const wl_output_listener WaylandOutput::outputListener{
    .geometry = [](void* data, wl_output*, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                   std::int32_t, const char*, const char*,
                   std::int32_t transform) { self(data).shape_.transform = transform; },
    .mode =
        [](void* data, wl_output*, std::uint32_t flags, std::int32_t width, std::int32_t height,
           std::int32_t) {
          if ((flags & WL_OUTPUT_MODE_CURRENT) != 0)
            self(data).shape_.mode = {bounded(width), bounded(height)};
        },
    .done = [](void* data, wl_output*) { self(data).isKnown_ = true; },
    .scale = [](void* data, wl_output*,
                std::int32_t scale) { self(data).shape_.wholeScale = std::max(1, scale); },
    .name = [](void* data, wl_output*, const char* name) { self(data).name_ = name; },
    .description = [](void*, wl_output*, const char*) {}};

const zxdg_output_v1_listener WaylandOutput::logicalListener{
    .logical_position =
        [](void* data, zxdg_output_v1*, std::int32_t x, std::int32_t y) {
          self(data).shape_.area.x = bounded(x);
          self(data).shape_.area.y = bounded(y);
        },
    .logical_size =
        [](void* data, zxdg_output_v1*, std::int32_t width, std::int32_t height) {
          self(data).shape_.area.width = bounded(width);
          self(data).shape_.area.height = bounded(height);
        },
    .done = [](void*, zxdg_output_v1*) {},
    .name = [](void*, zxdg_output_v1*, const char*) {},
    .description = [](void*, zxdg_output_v1*, const char*) {}};

WaylandOutput::WaylandOutput(wl_registry* registry, std::uint32_t number, std::uint32_t version)
    : number_(number),
      output_(static_cast<wl_output*>(wl_registry_bind(registry, number, &wl_output_interface,
                                                       std::min(version, newestVersion)))),
      isKnown_(version < WL_OUTPUT_DONE_SINCE_VERSION) {
  wl_output_add_listener(output_.get(), &outputListener, this);
}

void WaylandOutput::askLogicalSize(zxdg_output_manager_v1* manager) {
  if (manager == nullptr || logical_) return;
  logical_.reset(zxdg_output_manager_v1_get_xdg_output(manager, output_.get()));
  zxdg_output_v1_add_listener(logical_.get(), &logicalListener, this);
}

Scale WaylandOutput::scale(bool fractional) const {
  const auto& [mode, transform, wholeScale, area] = shape_;
  const Extent points{area.width, area.height};
  if (!fractional || points.width <= 0 || points.height <= 0) return scaleOf(wholeScale);
  const Extent turned = isTurned(transform) ? Extent{mode.height, mode.width} : mode;
  return deducedScale(turned, points, wholeScale);
}

}  // namespace desktop
