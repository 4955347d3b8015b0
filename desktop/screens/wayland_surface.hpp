#pragma once

#include <optional>

#include "desktop/screens/anchorage.hpp"
#include "desktop/screens/wayland_buffer.hpp"
#include "desktop/screens/wayland_display.hpp"
#include "desktop/screens/wayland_handles.hpp"

namespace desktop {

/// What a surface shows, and where.
struct SurfaceState {
  Anchorage place;
  Extent size;           ///< points
  WaylandBuffer buffer;  ///< null until there is something to show
  Scale scale;           ///< of the buffer

  bool operator==(const SurfaceState&) const = default;
};

/// A surface on an output, below all windows and clear of panels. What the compositor says is only
/// noted: whoever owns the surface looks at it once all has been read.
class WaylandSurface {
 public:
  enum class Kind {
    widget,
    shadow,  ///< shows a picture, and the pointer goes through it
    probe    ///< fills the free area, and is never seen
  };

  /// Asks for it; nothing is shown before it is configured. The size is in points.
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
  /// Whether what it shows last is still to be seen.
  [[nodiscard]] bool awaitsFrame() const { return frame_ != nullptr; }
  /// Whether something of it has been seen.
  [[nodiscard]] bool isSeen() const { return isSeen_; }

  /// Shows it once it is configured, from now on; nothing is done when it does already.
  void show(const SurfaceState& wanted);

 private:
  static const layer_shell::SurfaceListener layerListener;
  static const wp_fractional_scale_v1_listener scaleListener;
  static const wl_callback_listener frameListener;
  void setSize(Extent points);
  void setPlace(const Anchorage& place);
  void attach(const SurfaceState& wanted);
  void askFrame();

  SurfaceState shown_;  // its buffer goes after the surface
  // The parts go before the surface.
  WaylandOwned<wl_surface> surface_;
  WaylandOwned<zwlr_layer_surface_v1> layer_;
  WaylandOwned<wp_fractional_scale_v1> scaleTeller_;
  WaylandOwned<wp_viewport> viewport_;
  WaylandOwned<wl_callback> frame_;
  std::optional<Extent> configured_;
  std::optional<Scale> preferredScale_;
  bool isClosed_ = false;
  bool isSeen_ = false;
};

/// Says that all of a surface has changed, in a way that the compositor's version has.
void damageWhole(wl_surface* surface);

/// Whether a surface can be told the scale of its buffer, as a whole number.
bool takesBufferScale(wl_compositor* compositor);

}  // namespace desktop
