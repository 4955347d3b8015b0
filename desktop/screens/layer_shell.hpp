#pragma once

#include <wayland-client.h>

#include <cstdint>

// The layer shell of Wayland compositors, "zwlr_layer_shell_v1" up to version 4, as its
// documentation describes it: two interfaces with eleven requests and two events. No package of the
// system brings a description that could be compiled in. An xdg_popup, which nothing here makes,
// stays without a type.

extern const wl_interface zwlr_layer_shell_v1_interface;
extern const wl_interface zwlr_layer_surface_v1_interface;

struct zwlr_layer_shell_v1;
struct zwlr_layer_surface_v1;

namespace desktop::layer_shell {

inline constexpr std::uint32_t newestVersion = 4;
/// Above the wallpaper and below all windows.
inline constexpr std::uint32_t bottomLayer = 1;
enum Anchor : std::uint32_t { top = 1, bottom = 2, left = 4, right = 8 };
/// From version 4 on: the keyboard when the user asks for it.
inline constexpr std::uint32_t keyboardOnDemand = 2;

struct SurfaceListener {
  /// The size in points that the compositor wants; 0 leaves a length to the client.
  void (*configure)(void* data, zwlr_layer_surface_v1* surface, std::uint32_t serial,
                    std::uint32_t width, std::uint32_t height);
  void (*closed)(void* data, zwlr_layer_surface_v1* surface);
};

void destroyShell(zwlr_layer_shell_v1* shell);
void destroySurface(zwlr_layer_surface_v1* surface);
/// `output` may be null: the compositor chooses.
zwlr_layer_surface_v1* getSurface(zwlr_layer_shell_v1* shell, wl_surface* surface,
                                  wl_output* output, std::uint32_t layer, const char* name);
void listen(zwlr_layer_surface_v1* surface, const SurfaceListener* listener, void* data);
// Double-buffered: in force with the next commit of the surface. Lengths are in points.
void setSize(zwlr_layer_surface_v1* surface, std::uint32_t width, std::uint32_t height);
void setAnchor(zwlr_layer_surface_v1* surface, std::uint32_t anchors);
void setExclusiveZone(zwlr_layer_surface_v1* surface, std::int32_t zone);
void setMargin(zwlr_layer_surface_v1* surface, int top, int right, int bottom, int left);
void setKeyboard(zwlr_layer_surface_v1* surface, std::uint32_t interactivity);
void acknowledge(zwlr_layer_surface_v1* surface, std::uint32_t serial);

}  // namespace desktop::layer_shell
