#include "desktop/screens/wayland_display.hpp"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace desktop {

namespace {

/// Without the variable the library complains on standard error.
wl_display* connect() {
  const bool named = std::getenv("XDG_RUNTIME_DIR") != nullptr;
  return named || std::getenv("WAYLAND_SOCKET") != nullptr ? wl_display_connect(nullptr) : nullptr;
}

}  // namespace

const wl_registry_listener WaylandDisplay::registryListener{
    .global =
        [](void* data, wl_registry*, std::uint32_t number, const char* name,
           std::uint32_t version) {
          static_cast<WaylandDisplay*>(data)->add(number, name, version);
        },
    .global_remove =
        [](void* data, wl_registry*, std::uint32_t number) {
          static_cast<WaylandDisplay*>(data)->remove(number);
        }};

WaylandDisplay::WaylandDisplay() : display_(connect()) {
  if (!display_) throw std::runtime_error("there is no Wayland compositor");
  registry_.reset(wl_display_get_registry(display_.get()));
  wl_registry_add_listener(registry_.get(), &registryListener, this);
  wl_display_roundtrip(display_.get());  // what there is
  for (const auto& output : outputs_) output->askLogicalSize(outputManager_.get());
  if (layerShell_) wl_display_roundtrip(display_.get());  // what the outputs are like
}

void WaylandDisplay::add(std::uint32_t number, const char* name, std::uint32_t version) {
  const std::string_view kind = name;
  const auto bind = [&](auto& global, const wl_interface& interface, std::uint32_t newest) {
    if (kind != interface.name || global) return;
    global.reset(static_cast<typename std::decay_t<decltype(global)>::pointer>(
        wl_registry_bind(registry_.get(), number, &interface, std::min(version, newest))));
  };
  bind(compositor_, wl_compositor_interface, 4);
  bind(sharedMemory_, wl_shm_interface, 1);
  bind(layerShell_, zwlr_layer_shell_v1_interface, layer_shell::newestVersion);
  bind(viewporter_, wp_viewporter_interface, 1);
  bind(scaleTeller_, wp_fractional_scale_manager_v1_interface, 1);
  bind(activation_, xdg_activation_v1_interface, 1);
  bind(outputManager_, zxdg_output_manager_v1_interface, 3);
  if (kind == wl_seat_interface.name) seats_[number] = version;
  if (kind != wl_output_interface.name) return;
  outputs_.push_back(std::make_unique<WaylandOutput>(registry_.get(), number, version));
  outputs_.back()->askLogicalSize(outputManager_.get());
}

void WaylandDisplay::remove(std::uint32_t number) {
  std::erase_if(outputs_, [=](const auto& output) { return output->number() == number; });
  seats_.erase(number);
}

bool WaylandDisplay::hasOutput(std::uint32_t number) const {
  return std::ranges::any_of(outputs_,
                             [=](const auto& output) { return output->number() == number; });
}

WaylandOwned<wl_seat> WaylandDisplay::bindSeat(std::uint32_t number) const {
  constexpr std::uint32_t newestVersion = 5;
  const auto version = std::min(seats_.at(number), newestVersion);
  return WaylandOwned<wl_seat>(static_cast<wl_seat*>(
      wl_registry_bind(registry_.get(), number, &wl_seat_interface, version)));
}

bool WaylandDisplay::dispatch(bool readable) {
  auto* display = display_.get();
  if (readable && wl_display_prepare_read(display) == 0 && wl_display_read_events(display) < 0)
    return false;
  return wl_display_dispatch_pending(display) >= 0;
}

std::vector<const WaylandOutput*> WaylandDisplay::outputs() const {
  std::vector<const WaylandOutput*> known;
  for (const auto& output : outputs_) {
    if (output->isKnown()) known.push_back(output.get());
  }
  return known;
}

}  // namespace desktop
