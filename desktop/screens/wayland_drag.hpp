#pragma once

#include <memory>
#include <optional>

#include "desktop/screens/wayland_input.hpp"
#include "desktop/screens/wayland_surface.hpp"

namespace desktop {

/// What is dragged: the widget's surface, and what it shows.
struct DragSubject {
  WaylandSurface* surface = nullptr;
  const WaylandOutput* output = nullptr;
  wl_buffer* picture = nullptr;
  Extent size;   ///< points
  Scale scale;   ///< of the picture
  Point origin;  ///< in the output's free area, points
};

/// Dragging a surface with the pointer. Compositors do not agree on where the pointer is while the
/// surface under it moves. So that one stays where it was pressed, transparent, and a shadow of it,
/// which the pointer goes through, moves instead; in the end the surface is put in its place.
class WaylandDrag {
 public:
  explicit WaylandDrag(PointerPlace pressedAt) : pressedAt_(pressedAt) {}

  void move(PointerPlace place);
  /// Lets go. Returns whether this was a drag, and not a click.
  bool release();
  [[nodiscard]] bool isMoving() const { return phase_ == Phase::moving; }
  [[nodiscard]] bool isReleased() const { return phase_ == Phase::released; }
  [[nodiscard]] bool isOver() const { return phase_ == Phase::over; }
  /// Where the widget is dragged to, in the free area.
  [[nodiscard]] Point target() const { return target_; }
  /// Does what is due; after each round of events.
  void proceed(const WaylandDisplay& display, const DragSubject& subject);
  /// The surface has its place and its picture again, and `proceed` ends it with the next frame.
  void land() { phase_ = Phase::landing; }

 private:
  enum class Phase { pressed, moving, released, landing, over };
  void showShadow(const WaylandDisplay& display, const DragSubject& subject);
  void hideSurface(const WaylandDisplay& display, const DragSubject& subject);

  Phase phase_ = Phase::pressed;
  PointerPlace pressedAt_;
  PointerPlace place_;
  std::optional<Point> origin_;
  Point target_;
  Point shadowAt_;
  std::unique_ptr<WaylandSurface> shadow_;
  WaylandBuffer transparent_;
};

}  // namespace desktop
