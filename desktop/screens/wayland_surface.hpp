#pragma once

#include <optional>

#include "desktop/placement.hpp"
#include "desktop/screens/wayland_buffer.hpp"
#include "desktop/screens/wayland_display.hpp"
#include "desktop/screens/wayland_handles.hpp"

namespace desktop {

/// Where a surface stands on its output: points from the two edges that meet in a corner of what
/// panels leave free.
struct Anchorage {
  Corner corner = Corner::topLeft;
  Point margins;

  bool operator==(const Anchorage&) const = default;
};

/// A surface on an output, below all windows and clear of panels. What the compositor says is only
/// noted; `changed` is called, and whoever owns the surface acts on it once all has been read.
class WaylandSurface {
 public:
  enum class Kind {
    widget,
    shadow,  ///< shows a picture, and the pointer goes through it
    probe    ///< fills the free area, and is never seen
  };

  WaylandSurface(const WaylandDisplay& display, const WaylandOutput& output, Kind kind,
                 Extent size);
  ~WaylandSurface();
  WaylandSurface(const WaylandSurface&) = delete;
  WaylandSurface& operator=(const WaylandSurface&) = delete;

  [[nodiscard]] wl_surface* handle() const { return surface_.get(); }
  /// The size in points that the compositor gave it; absent until it has.
  [[nodiscard]] std::optional<Extent> configured() const { return configured_; }
  /// The compositor took it away, for example with its output.
  [[nodiscard]] bool isClosed() const { return isClosed_; }
  /// What the compositor told; absent when it does not.
  [[nodiscard]] std::optional<Scale> preferredScale() const { return preferredScale_; }
  /// Whether a frame that was asked for is still to come.
  [[nodiscard]] bool awaitsFrame() const { return frame_ != nullptr; }
  [[nodiscard]] bool hasPicture() const { return hasPicture_; }

  // In force with the next commit.
  void setSize(Extent points);
  void setPlace(const Anchorage& place);
  /// A buffer for that size in points.
  void setPicture(wl_buffer* buffer, Extent points, Scale scale);
  void askFrame();
  void commit();

 private:
  static const layer_shell::SurfaceListener layerListener;
  static const wp_fractional_scale_v1_listener scaleListener;
  static const wl_callback_listener frameListener;

  const WaylandDisplay& display_;
  // The parts go before the surface.
  WaylandOwned<wl_surface> surface_;
  WaylandOwned<zwlr_layer_surface_v1> layer_;
  WaylandOwned<wp_fractional_scale_v1> scaleTeller_;
  WaylandOwned<wp_viewport> viewport_;
  WaylandOwned<wl_callback> frame_;
  std::optional<Extent> configured_;
  std::optional<Scale> preferredScale_;
  bool isClosed_ = false;
  bool hasPicture_ = false;
};

}  // namespace desktop
