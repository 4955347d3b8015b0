#include "desktop/screens/anchorage.hpp"

namespace desktop {

namespace {

/// From the top left corner to the anchorage's own, and back.
Point turned(Point place, Corner corner, Extent size, Extent freeArea) {
  return {isLeft(corner) ? place.x : freeArea.width - size.width - place.x,
          isTop(corner) ? place.y : freeArea.height - size.height - place.y};
}

}  // namespace

Anchorage anchorage(const Placement& placement, Extent size, Extent freeArea) {
  const Area area{0, 0, freeArea.width, freeArea.height};
  const auto place = position(placement, size, area, {});
  const auto corner = placement.moved ? nearestCorner(place, size, area) : placement.corner;
  return {corner, turned(place, corner, size, freeArea)};
}

Point origin(const Anchorage& anchorage, Extent size, Extent freeArea) {
  return turned(anchorage.margins, anchorage.corner, size, freeArea);
}

}  // namespace desktop
