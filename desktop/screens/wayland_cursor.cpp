#include "desktop/screens/wayland_cursor.hpp"

#include <algorithm>
#include <cstdlib>

namespace desktop {

namespace {

constexpr int usualSize = 24;

int themeSize() {
  const char* size = std::getenv("XCURSOR_SIZE");
  const int number = size == nullptr ? 0 : std::atoi(size);
  return number > 0 && number <= 512 ? number : usualSize;
}

/// The largest of all outputs, so that the arrow is sharp on each.
int wholeScale(const WaylandDisplay& display) {
  int largest = 1;
  for (const auto* output : display.outputs())
    largest = std::max(largest, pixels(1, output->scale(false)));
  return largest;
}

}  // namespace

WaylandCursor::WaylandCursor(const WaylandDisplay& display, wl_pointer* pointer,
                             std::uint32_t serial) {
  const int scale = wholeScale(display);
  theme_.reset(wl_cursor_theme_load(std::getenv("XCURSOR_THEME"), themeSize() * scale,
                                    display.sharedMemory()));
  if (!theme_) return;
  const wl_cursor* arrow = wl_cursor_theme_get_cursor(theme_.get(), "left_ptr");
  if (arrow == nullptr || arrow->image_count == 0) return;
  wl_cursor_image* image = arrow->images[0];
  surface_.reset(wl_compositor_create_surface(display.compositor()));
  wl_surface_attach(surface_.get(), wl_cursor_image_get_buffer(image), 0, 0);
  wl_surface_set_buffer_scale(surface_.get(), scale);
  wl_surface_damage_buffer(surface_.get(), 0, 0, INT32_MAX, INT32_MAX);
  wl_surface_commit(surface_.get());
  wl_pointer_set_cursor(pointer, serial, surface_.get(), static_cast<int>(image->hotspot_x) / scale,
                        static_cast<int>(image->hotspot_y) / scale);
}

}  // namespace desktop
