#include "desktop/screens/wayland_input.hpp"

#include <algorithm>
#include <iterator>

namespace desktop {

std::vector<InputEvent> WaylandInput::take() {
  std::vector<InputEvent> events;
  const auto gone = std::erase_if(
      seats_, [this](const auto& seat) { return !display_.seats().contains(seat->number()); });
  if (gone > 0) events.push_back({});
  for (const auto& seat : seats_) std::ranges::copy(seat->take(), std::back_inserter(events));
  for (const auto& [number, version] : display_.seats()) {
    if (!isBound(number)) seats_.push_back(std::make_unique<WaylandSeat>(display_, number));
  }
  return events;
}

bool WaylandInput::isBound(std::uint32_t number) const {
  return std::ranges::any_of(seats_, [=](const auto& seat) { return seat->number() == number; });
}

}  // namespace desktop
