#pragma once

#include <functional>
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
  /// The first seat, bound anew, since it tells only once what it has; null without one.
  [[nodiscard]] WaylandOwned<wl_seat> bindSeat() const;
  /// Those of which all is known, in the compositor's order.
  [[nodiscard]] std::vector<const WaylandOutput*> outputs() const;

  /// Called when outputs come, go or change.
  std::function<void()> outputsChanged = [] {};

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
  std::uint32_t seat_ = 0;  // its number
  std::vector<std::unique_ptr<WaylandOutput>> outputs_;
};

}  // namespace desktop
