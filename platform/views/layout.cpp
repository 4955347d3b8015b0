#include "platform/views/layout.hpp"

#include <cmath>

#include "platform/views/element.hpp"

namespace platform {

namespace {

double snapped(double position, double scale) { return std::round(position * scale) / scale; }

/// Drops what cannot be seen, mirrors where that is asked for, and snaps positions to pixels.
void finish(std::vector<DrawItem>& items, const Canvas& canvas) {
  std::erase_if(items, [](const DrawItem& item) { return item.color.alpha <= 0; });
  for (auto& item : items) {
    auto& frame = item.frame;
    if (canvas.rightToLeft) frame.x = canvas.size.width - frame.x - frame.width;
    frame.x = snapped(frame.x, canvas.scale);
    frame.y = snapped(frame.y, canvas.scale);
  }
}

}  // namespace

DrawList layOut(const View& view, const Canvas& canvas, const Typesetter& typesetter) {
  const auto& [width, height] = canvas.size;
  const Rect content{canvas.inset, canvas.inset, width - 2 * canvas.inset,
                     height - 2 * canvas.inset};
  Inherited inherited;
  inherited.deviceScale = canvas.scale;
  inherited.typesetter = &typesetter;
  inherited.environment = &canvas.environment;

  const auto root = view.node().resolve(inherited);
  const auto size = root->measure({content.width, content.height});
  const auto placed = root->place(aligned(size, content, Alignment::center));
  DrawList list{.family = "",
                .scale = canvas.scale,
                .size = canvas.size,
                .content = content,
                .cornerRadius = canvas.cornerRadius,
                .items = {},
                .accessibility = {}};
  placed.element->emit(placed, list);
  finish(list.items, canvas);
  list.items.insert(list.items.begin(),
                    {{0, 0, width, height}, Color::white, GradientItem{canvas.background}});
  return list;
}

Size measure(const View& view, const Proposal& room, const Typesetter& typesetter) {
  const ViewEnvironment environment;
  Inherited inherited;
  inherited.typesetter = &typesetter;
  inherited.environment = &environment;
  return view.node().resolve(inherited)->measure(room);
}

}  // namespace platform
