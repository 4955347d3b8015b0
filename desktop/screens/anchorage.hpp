#pragma once

#include "desktop/placement.hpp"

namespace desktop {

/// Where a surface stands on its output: points from the two edges that meet in a corner of what
/// panels leave free.
struct Anchorage {
  Corner corner = Corner::topLeft;
  Point margins;

  bool operator==(const Anchorage&) const = default;
};

/// For a widget of that size. One that was dragged stands from its nearest corner, so that a panel
/// that comes later does not push it off the screen.
Anchorage anchorage(const Placement& placement, Extent size, Extent freeArea);

/// The widget's top left corner in the free area.
Point origin(const Anchorage& anchorage, Extent size, Extent freeArea);

}  // namespace desktop
