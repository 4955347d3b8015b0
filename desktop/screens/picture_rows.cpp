#include "desktop/screens/picture_rows.hpp"

#include <cstdint>

namespace desktop {

namespace {

bool isOpaque(std::uint32_t pixel) { return pixel >> 31U != 0; }

}  // namespace

std::vector<Area> opaqueRows(cairo_surface_t* picture) {
  const int width = cairo_image_surface_get_width(picture);
  const int height = cairo_image_surface_get_height(picture);
  if (cairo_image_surface_get_format(picture) != CAIRO_FORMAT_ARGB32)
    return {{0, 0, width, height}};
  cairo_surface_flush(picture);
  const auto* row = cairo_image_surface_get_data(picture);
  std::vector<Area> rows;
  for (int y = 0; y < height; ++y, row += cairo_image_surface_get_stride(picture)) {
    const auto* pixels = reinterpret_cast<const std::uint32_t*>(row);
    int first = 0;
    int end = width;
    while (first < end && !isOpaque(pixels[first])) ++first;
    while (end > first && !isOpaque(pixels[end - 1])) --end;
    if (first == end) continue;
    auto* last = rows.empty() ? nullptr : &rows.back();
    if (last != nullptr && last->x == first && last->width == end - first &&
        last->y + last->height == y) {
      ++last->height;
    } else {
      rows.push_back({first, y, end - first, 1});
    }
  }
  return rows;
}

}  // namespace desktop
