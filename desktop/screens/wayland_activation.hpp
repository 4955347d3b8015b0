#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "desktop/screens/wayland_display.hpp"

namespace desktop {

/// Asks the compositor for a token with which a program that the user has just asked for may come
/// to the front (xdg-activation).
class WaylandActivation {
 public:
  /// `answered` is called once, while events are read, with the token, which is empty when the
  /// compositor gives none. `serial` is that of the press or key on the surface.
  WaylandActivation(const WaylandDisplay& display, wl_seat* seat, std::uint32_t serial,
                    wl_surface* surface, std::function<void(const std::string&)> answered);
  WaylandActivation(const WaylandActivation&) = delete;
  WaylandActivation& operator=(const WaylandActivation&) = delete;

 private:
  static const xdg_activation_token_v1_listener tokenListener;
  static const wl_callback_listener endListener;

  std::function<void(const std::string&)> answered_;
  WaylandOwned<xdg_activation_token_v1> request_;
  WaylandOwned<wl_callback> end_;
  std::string token_;
};

}  // namespace desktop
