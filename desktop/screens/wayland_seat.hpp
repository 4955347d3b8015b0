#pragma once

#include <optional>
#include <vector>

#include "desktop/screens/input_event.hpp"
#include "desktop/screens/wayland_cursor.hpp"

namespace desktop {

/// Pointer and keyboard of one seat, as they come and go. What the user does is only noted.
class WaylandSeat {
 public:
  /// Binds the global of that number.
  WaylandSeat(const WaylandDisplay& display, std::uint32_t number);
  WaylandSeat(const WaylandSeat&) = delete;
  WaylandSeat& operator=(const WaylandSeat&) = delete;

  [[nodiscard]] std::uint32_t number() const { return number_; }
  /// What was noted since the last call.
  [[nodiscard]] std::vector<InputEvent> take() { return std::exchange(events_, {}); }

 private:
  static const wl_seat_listener seatListener;
  static const wl_pointer_listener pointerListener;
  static const wl_keyboard_listener keyboardListener;
  void takeDevices(std::uint32_t capabilities);
  void press(std::uint32_t button, bool down);
  void type(std::uint32_t key);
  void note(InputEvent::Kind kind);

  const WaylandDisplay& display_;
  std::uint32_t number_;
  WaylandOwned<wl_seat> seat_;
  WaylandOwned<wl_pointer> pointer_;
  WaylandOwned<wl_keyboard> keyboard_;
  std::optional<WaylandCursor> cursor_;  // while the pointer is on the widget
  PointerPlace place_;
  std::uint32_t serial_ = 0;
  bool isShifted_ = false;
  std::vector<InputEvent> events_;
};

}  // namespace desktop
