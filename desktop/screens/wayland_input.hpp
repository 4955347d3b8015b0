#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "desktop/screens/wayland_cursor.hpp"

namespace desktop {

/// A place on a surface in points; Wayland tells fractions of them.
struct PointerPlace {
  double x = 0;
  double y = 0;
};

/// What the user does with a surface; called while events are read.
struct InputEvents {
  std::function<void(PointerPlace)> pressed;  ///< the first button
  std::function<void(PointerPlace)> moved;
  std::function<void()> released;
  std::function<void(PointerPlace)> menuAsked;  ///< the right button was let go
  std::function<void()> returnPressed;
  std::function<void()> menuKeyPressed;
};

/// Pointer and keyboard of a seat, as they come and go.
class WaylandInput {
 public:
  WaylandInput(const WaylandDisplay& display, WaylandOwned<wl_seat> seat, InputEvents events);
  WaylandInput(const WaylandInput&) = delete;
  WaylandInput& operator=(const WaylandInput&) = delete;

  [[nodiscard]] wl_seat* seat() const { return seat_.get(); }
  /// Of the last press or key.
  [[nodiscard]] std::uint32_t serial() const { return serial_; }

 private:
  static const wl_seat_listener seatListener;
  static const wl_pointer_listener pointerListener;
  static const wl_keyboard_listener keyboardListener;
  void takeDevices(std::uint32_t capabilities);
  void press(std::uint32_t button, bool down);
  void type(std::uint32_t key);

  const WaylandDisplay& display_;
  WaylandOwned<wl_seat> seat_;
  InputEvents events_;
  WaylandOwned<wl_pointer> pointer_;
  WaylandOwned<wl_keyboard> keyboard_;
  std::optional<WaylandCursor> cursor_;  // while the pointer is on the widget
  PointerPlace place_;
  std::uint32_t serial_ = 0;
  bool isShifted_ = false;
};

}  // namespace desktop
