#pragma once

#include <memory>
#include <vector>

#include "desktop/screens/wayland_seat.hpp"

namespace desktop {

/// What users do, with all seats that there are.
class WaylandInput {
 public:
  explicit WaylandInput(const WaylandDisplay& display) : display_(display) {}

  /// What was done since the last call, seat by seat; their handles last until the next one. Takes
  /// up seats that have come and lets go of those that have gone.
  [[nodiscard]] std::vector<InputEvent> take();

 private:
  [[nodiscard]] bool isBound(std::uint32_t number) const;

  const WaylandDisplay& display_;
  std::vector<std::unique_ptr<WaylandSeat>> seats_;
};

}  // namespace desktop
