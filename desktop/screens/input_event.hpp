#pragma once

#include <wayland-client.h>

#include <cstdint>

namespace desktop {

/// A place on a surface in points; Wayland tells fractions of them.
struct PointerPlace {
  double x = 0;
  double y = 0;
};

/// What a user does with the widget on Wayland.
struct InputEvent {
  enum class Kind {
    pressed,  ///< the first button
    moved,
    released,
    interrupted,  ///< the pointer has gone, perhaps with a button held that nobody sees let go
    menuAsked,    ///< the right button was let go
    returnPressed,
    menuKeyPressed
  };

  Kind kind = Kind::interrupted;
  PointerPlace place;        ///< of the pointer
  std::uint32_t serial = 0;  ///< of the last press or key
  wl_seat* seat = nullptr;   ///< null when it has gone
};

}  // namespace desktop
