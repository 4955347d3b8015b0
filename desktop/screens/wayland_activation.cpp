#include "desktop/screens/wayland_activation.hpp"

namespace desktop {

const xdg_activation_token_v1_listener WaylandActivation::tokenListener{
    .done = [](void* data, xdg_activation_token_v1*, const char* token) {
      static_cast<WaylandActivation*>(data)->token_ = token;
    }};

const wl_callback_listener WaylandActivation::endListener{
    .done = [](void* data, wl_callback*, std::uint32_t) {
      static_cast<WaylandActivation*>(data)->isAnswered_ = true;
    }};

WaylandActivation::WaylandActivation(const WaylandDisplay& display, wl_seat* seat,
                                     std::uint32_t serial, wl_surface* surface) {
  if (display.activation() != nullptr) {
    request_.reset(xdg_activation_v1_get_activation_token(display.activation()));
    xdg_activation_token_v1_add_listener(request_.get(), &tokenListener, this);
    xdg_activation_token_v1_set_serial(request_.get(), serial, seat);
    xdg_activation_token_v1_set_surface(request_.get(), surface);
    xdg_activation_token_v1_commit(request_.get());
  }
  // What was asked before is answered before: a compositor that gives no token is not waited for.
  end_.reset(wl_display_sync(display.handle()));
  wl_callback_add_listener(end_.get(), &endListener, this);
}

}  // namespace desktop
