#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "desktop/screens/wayland_display.hpp"

namespace desktop {

/// Asks the compositor for a token with which a program that the user has just asked for may come
/// to the front (xdg-activation).
class WaylandActivation {
 public:
  /// `serial` is that of the press or key on the surface.
  WaylandActivation(const WaylandDisplay& display, wl_seat* seat, std::uint32_t serial,
                    wl_surface* surface);
  WaylandActivation(const WaylandActivation&) = delete;
  WaylandActivation& operator=(const WaylandActivation&) = delete;

  /// The token, which is empty when the compositor gives none; absent until it has answered.
  [[nodiscard]] std::optional<std::string> answer() const {
    return isAnswered_ ? std::optional(token_) : std::nullopt;
  }

 private:
  static const xdg_activation_token_v1_listener tokenListener;
  static const wl_callback_listener endListener;

  WaylandOwned<xdg_activation_token_v1> request_;
  WaylandOwned<wl_callback> end_;
  std::string token_;
  bool isAnswered_ = false;
};

}  // namespace desktop
