#include "desktop/screens/wayland_cursor.hpp"

#include <algorithm>
#include <cstdlib>

#include "desktop/screens/wayland_surface.hpp"

namespace desktop {

namespace {

constexpr int usualSize = 24;

int themeSize() {
  const char* size = std::getenv("XCURSOR_SIZE");
  const int number = size == nullptr ? 0 : std::atoi(size);
  return number > 0 && number <= 512 ? number : usualSize;
}

/// The largest of all outputs, so that the arrow is sharp on each.
std::uint32_t wholeScale(const WaylandDisplay& display) {
  int largest = 1;
  if (!takesBufferScale(display.compositor())) return 1;
  for (const auto* output : display.outputs())
    largest = std::max(largest, pixels(1, output->scale(false)));
  return static_cast<std::uint32_t>(largest);
}

/// A theme may have no image of the size that was asked for, and a buffer's size must be a multiple
/// of its scale.
bool fits(const wl_cursor_image& image, std::uint32_t scale) {
  return image.width % scale == 0 && image.height % scale == 0;
}

}  // namespace

WaylandCursor::WaylandCursor(const WaylandDisplay& display, wl_pointer* pointer,
                             std::uint32_t serial) {
  const auto wanted = wholeScale(display);
  theme_.reset(wl_cursor_theme_load(std::getenv("XCURSOR_THEME"),
                                    themeSize() * static_cast<int>(wanted),
                                    display.sharedMemory()));
  if (!theme_) return;
  const wl_cursor* arrow = wl_cursor_theme_get_cursor(theme_.get(), "left_ptr");
  if (arrow == nullptr || arrow->image_count == 0) return;
  wl_cursor_image* image = arrow->images[0];
  wl_buffer* buffer = wl_cursor_image_get_buffer(image);
  if (buffer == nullptr) return;
  const auto scale = fits(*image, wanted) ? wanted : 1;
  surface_.reset(wl_compositor_create_surface(display.compositor()));
  wl_surface_attach(surface_.get(), buffer, 0, 0);
  if (scale > 1) wl_surface_set_buffer_scale(surface_.get(), static_cast<int>(scale));
  damageWhole(surface_.get());
  wl_surface_commit(surface_.get());
  wl_pointer_set_cursor(pointer, serial, surface_.get(), static_cast<int>(image->hotspot_x / scale),
                        static_cast<int>(image->hotspot_y / scale));
}

}  // namespace desktop
