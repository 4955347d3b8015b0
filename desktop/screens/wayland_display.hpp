#pragma once

#include <map>
#include <memory>
#include <vector>

#include "desktop/screens/wayland_handles.hpp"
#include "desktop/screens/wayland_output.hpp"

namespace desktop {

/// A connection to a Wayland compositor, and what it offers.
class WaylandDisplay {
 public:
  /// Throws std::runtime_error when there is none.
  WaylandDisplay();
  WaylandDisplay(const WaylandDisplay&) = delete;
  WaylandDisplay& operator=(const WaylandDisplay&) = delete;

  [[nodiscard]] wl_display* handle() const { return display_.get(); }
  [[nodiscard]] wl_compositor* compositor() const { return compositor_.get(); }
  [[nodiscard]] wl_shm* sharedMemory() const { return sharedMemory_.get(); }
  /// Null without one: then the compositor offers no layer shell.
  [[nodiscard]] zwlr_layer_shell_v1* layerShell() const { return layerShell_.get(); }
  /// Null when pictures of a scale that is no whole number cannot be shown.
  [[nodiscard]] wp_viewporter* viewporter() const { return viewporter_.get(); }
  /// Null when the compositor does not tell a surface its scale.
  [[nodiscard]] wp_fractional_scale_manager_v1* scaleTeller() const { return scaleTeller_.get(); }
  /// Null when the compositor has no tokens for programs that are to come to the front.
  [[nodiscard]] xdg_activation_v1* activation() const { return activation_.get(); }
  /// Those of which all is known, in the compositor's order.
  [[nodiscard]] std::vector<const WaylandOutput*> outputs() const;
  /// Whether that one is still there.
  [[nodiscard]] bool hasOutput(std::uint32_t number) const;
  /// The seats' numbers, with the versions in which the compositor offers them.
  [[nodiscard]] const std::map<std::uint32_t, std::uint32_t>& seats() const { return seats_; }
  /// To be listened to at once, since a seat tells only once what it has.
  [[nodiscard]] WaylandOwned<wl_seat> bindSeat(std::uint32_t number) const;

  /// Handles the events that have come, reading them when there is something to be read, without
  /// waiting. Returns whether the connection is still there.
  bool dispatch(bool readable);

 private:
  static const wl_registry_listener registryListener;
  void add(std::uint32_t number, const char* name, std::uint32_t version);
  void remove(std::uint32_t number);

  WaylandOwned<wl_display> display_;
  WaylandOwned<wl_registry> registry_;
  WaylandOwned<wl_compositor> compositor_;
  WaylandOwned<wl_shm> sharedMemory_;
  WaylandOwned<zwlr_layer_shell_v1> layerShell_;
  WaylandOwned<wp_viewporter> viewporter_;
  WaylandOwned<wp_fractional_scale_manager_v1> scaleTeller_;
  WaylandOwned<xdg_activation_v1> activation_;
  WaylandOwned<zxdg_output_manager_v1> outputManager_;
  std::map<std::uint32_t, std::uint32_t> seats_;
  std::vector<std::unique_ptr<WaylandOutput>> outputs_;
};

}  // namespace desktop
