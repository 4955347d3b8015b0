#pragma once

#include <memory>
#include <optional>

#include "desktop/screens/wayland_surface.hpp"

namespace desktop {

/// What panels leave free of an output. A surface that fills it, and that nobody sees, is told its
/// size, and told again when a panel comes or goes.
class WaylandFreeArea {
 public:
  WaylandFreeArea(const WaylandDisplay& display, const WaylandOutput& output);

  /// In points; absent until it is told first.
  [[nodiscard]] std::optional<Extent> size() const;
  /// The compositor does not tell it any more.
  [[nodiscard]] bool isClosed() const { return probe_->isClosed(); }
  /// Learns it anew when the output has another size or scale than before: not every compositor
  /// tells a surface that it does not show.
  void follow(const WaylandOutput& output);

 private:
  const WaylandDisplay& display_;
  OutputShape shape_;  // for which the probe was made
  std::unique_ptr<WaylandSurface> probe_;
  std::optional<Extent> former_;  // until the probe is told
};

}  // namespace desktop
