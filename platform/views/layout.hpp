#pragma once

#include "platform/views/draw_list.hpp"
#include "platform/views/views.hpp"

namespace platform {

/// Where a view is to be drawn.
struct Canvas {
  Size size;
  double inset = 0;  ///< around the content
  double cornerRadius = 0;
  double scale = 1;  ///< device pixels per point
  bool rightToLeft = false;
  LinearGradient background;
  ViewEnvironment environment;
};

/// Lays a view out on a canvas. Positions are on whole device pixels. From right to left,
/// everything is mirrored but the items themselves.
DrawList layOut(const View& view, const Canvas& canvas, const Typesetter& typesetter);

/// The size that a view takes when it is offered that room.
Size measure(const View& view, const Proposal& room, const Typesetter& typesetter);

}  // namespace platform
