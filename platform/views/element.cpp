#include "platform/views/element.hpp"

namespace platform {

Size Element::measure(const Proposal& proposal) const {
  for (const auto& [asked, size] : known_) {
    if (asked == proposal) return size;
  }
  const Size size = sizeFor(proposal);
  known_.emplace_back(proposal, size);
  return size;
}

void Element::emit(const Placed& placed, DrawList& list) const {
  for (const auto& child : placed.children) child.element->emit(child, list);
}

Rect aligned(const Size& size, const Rect& frame, Alignment alignment) {
  const double freeWidth = frame.width - size.width;
  const double freeHeight = frame.height - size.height;
  Rect result{frame.x, frame.y, size.width, size.height};
  if (alignment.horizontal == HorizontalAlignment::center) result.x += freeWidth / 2;
  if (alignment.horizontal == HorizontalAlignment::trailing) result.x += freeWidth;
  if (alignment.vertical == VerticalAlignment::center) result.y += freeHeight / 2;
  if (alignment.vertical == VerticalAlignment::bottom) result.y += freeHeight;
  return result;
}

}  // namespace platform
