#pragma once

#include <fractional-scale-v1-client-protocol.h>
#include <viewporter-client-protocol.h>
#include <wayland-client.h>
#include <xdg-activation-v1-client-protocol.h>
#include <xdg-output-unstable-v1-client-protocol.h>

#include "desktop/screens/layer_shell.hpp"
#include "platform/foundation/raii.hpp"

namespace desktop {

// The library's own functions are static in each unit, so that they cannot be part of a type.
inline void releaseWayland(wl_display* handle) { wl_display_disconnect(handle); }
inline void releaseWayland(wl_registry* handle) { wl_registry_destroy(handle); }
inline void releaseWayland(wl_compositor* handle) { wl_compositor_destroy(handle); }
inline void releaseWayland(wl_region* handle) { wl_region_destroy(handle); }
inline void releaseWayland(wl_shm* handle) { wl_shm_destroy(handle); }
inline void releaseWayland(wl_shm_pool* handle) { wl_shm_pool_destroy(handle); }
inline void releaseWayland(wl_buffer* handle) { wl_buffer_destroy(handle); }
inline void releaseWayland(wl_surface* handle) { wl_surface_destroy(handle); }
inline void releaseWayland(wl_callback* handle) { wl_callback_destroy(handle); }
// These four say that they go only from some version on; before it they just do.
inline void releaseWayland(wl_output* handle) {
  wl_output_get_version(handle) >= WL_OUTPUT_RELEASE_SINCE_VERSION ? wl_output_release(handle)
                                                                   : wl_output_destroy(handle);
}
inline void releaseWayland(wl_seat* handle) {
  wl_seat_get_version(handle) >= WL_SEAT_RELEASE_SINCE_VERSION ? wl_seat_release(handle)
                                                               : wl_seat_destroy(handle);
}
inline void releaseWayland(wl_pointer* handle) {
  wl_pointer_get_version(handle) >= WL_POINTER_RELEASE_SINCE_VERSION ? wl_pointer_release(handle)
                                                                     : wl_pointer_destroy(handle);
}
inline void releaseWayland(wl_keyboard* handle) {
  wl_keyboard_get_version(handle) >= WL_KEYBOARD_RELEASE_SINCE_VERSION
      ? wl_keyboard_release(handle)
      : wl_keyboard_destroy(handle);
}
inline void releaseWayland(wp_viewporter* handle) { wp_viewporter_destroy(handle); }
inline void releaseWayland(wp_viewport* handle) { wp_viewport_destroy(handle); }
inline void releaseWayland(wp_fractional_scale_manager_v1* handle) {
  wp_fractional_scale_manager_v1_destroy(handle);
}
inline void releaseWayland(wp_fractional_scale_v1* handle) {
  wp_fractional_scale_v1_destroy(handle);
}
inline void releaseWayland(zxdg_output_manager_v1* handle) {
  zxdg_output_manager_v1_destroy(handle);
}
inline void releaseWayland(zxdg_output_v1* handle) { zxdg_output_v1_destroy(handle); }
inline void releaseWayland(xdg_activation_v1* handle) { xdg_activation_v1_destroy(handle); }
inline void releaseWayland(xdg_activation_token_v1* handle) {
  xdg_activation_token_v1_destroy(handle);
}
inline void releaseWayland(zwlr_layer_shell_v1* handle) { layer_shell::destroyShell(handle); }
inline void releaseWayland(zwlr_layer_surface_v1* handle) { layer_shell::destroySurface(handle); }

struct ReleaseWayland {
  template <class Handle>
  void operator()(Handle* handle) const {
    releaseWayland(handle);
  }
};

/// Owns one object of the protocol.
template <class Handle>
using WaylandOwned = std::unique_ptr<Handle, ReleaseWayland>;

}  // namespace desktop
