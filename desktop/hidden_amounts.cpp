#include "desktop/hidden_amounts.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numbers>

namespace desktop {

namespace {

using Context = platform::Owned<cairo_t, cairo_destroy>;

constexpr int square = 5;            // points
constexpr int softness = 5;          // times that each colour is mixed with its neighbours'
constexpr double cornerRadius = 20;  // points, the widget's own

Picture empty(int width, int height) {
  return Picture(
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, std::max(1, width), std::max(1, height)));
}

int widthOf(cairo_surface_t* picture) { return cairo_image_surface_get_width(picture); }
int heightOf(cairo_surface_t* picture) { return cairo_image_surface_get_height(picture); }

Picture resized(cairo_surface_t* picture, int width, int height, cairo_filter_t filter) {
  auto result = empty(width, height);
  const Context context(cairo_create(result.get()));
  cairo_scale(context.get(), static_cast<double>(widthOf(result.get())) / widthOf(picture),
              static_cast<double>(heightOf(result.get())) / heightOf(picture));
  cairo_set_source_surface(context.get(), picture, 0, 0);
  cairo_pattern_set_filter(cairo_get_source(context.get()), filter);
  cairo_pattern_set_extend(cairo_get_source(context.get()), CAIRO_EXTEND_PAD);
  cairo_paint(context.get());
  return result;
}

/// Gives a pixel (premultiplied) that a round corner made transparent its colour back.
std::uint32_t opaque(std::uint32_t pixel) {
  const auto alpha = pixel >> 24U;
  if (alpha == 0) return 0xff000000U;
  std::uint32_t result = 0xff000000U;
  for (const unsigned shift : {0U, 8U, 16U})
    result |= std::min(255U, (pixel >> shift & 0xffU) * 255U / alpha) << shift;
  return result;
}

/// A half of the middle one and a quarter of each of the others.
std::uint32_t mixed(std::uint32_t before, std::uint32_t middle, std::uint32_t after) {
  std::uint32_t result = 0;
  for (const unsigned shift : {0U, 8U, 16U, 24U}) {
    const auto part = [shift](std::uint32_t pixel) { return pixel >> shift & 0xffU; };
    result |= (part(before) + 2 * part(middle) + part(after) + 2) / 4 << shift;
  }
  return result;
}

/// Mixes each pixel of a line with the two beside it.
void soften(std::uint32_t* pixels, std::ptrdiff_t count, std::ptrdiff_t step) {
  auto before = pixels[0];
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const auto middle = pixels[i * step];
    pixels[i * step] = mixed(before, middle, pixels[std::min(i + 1, count - 1) * step]);
    before = middle;
  }
}

void soften(cairo_surface_t* picture) {
  cairo_surface_flush(picture);
  auto* pixels = reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(picture));
  const int width = widthOf(picture);
  const int height = heightOf(picture);
  const std::ptrdiff_t rowStep = cairo_image_surface_get_stride(picture) / 4;
  for (int pass = 0; pass < softness; ++pass) {
    for (int y = 0; y < height; ++y) soften(pixels + y * rowStep, width, 1);
    for (int x = 0; x < width; ++x) soften(pixels + x, height, rowStep);
  }
  cairo_surface_mark_dirty(picture);
}

void makeOpaque(cairo_surface_t* picture) {
  cairo_surface_flush(picture);
  auto* row = cairo_image_surface_get_data(picture);
  for (int y = 0; y < heightOf(picture); ++y, row += cairo_image_surface_get_stride(picture)) {
    auto* pixels = reinterpret_cast<std::uint32_t*>(row);
    std::transform(pixels, pixels + widthOf(picture), pixels, opaque);
  }
  cairo_surface_mark_dirty(picture);
}

void roundedRectangle(cairo_t* context, double width, double height, double radius) {
  constexpr double quarter = std::numbers::pi / 2;
  cairo_new_sub_path(context);
  cairo_arc(context, width - radius, radius, radius, -quarter, 0);
  cairo_arc(context, width - radius, height - radius, radius, 0, quarter);
  cairo_arc(context, radius, height - radius, radius, quarter, 2 * quarter);
  cairo_arc(context, radius, radius, radius, 2 * quarter, 3 * quarter);
  cairo_close_path(context);
}

}  // namespace

Picture reduced(cairo_surface_t* picture, Scale scale) {
  auto result = resized(picture, points(widthOf(picture), scale) / square,
                        points(heightOf(picture), scale) / square, CAIRO_FILTER_GOOD);
  makeOpaque(result.get());
  soften(result.get());
  return result;
}

Picture blurred(cairo_surface_t* reduced, Extent pixels, Scale scale) {
  // Doubled again and again: each time evens out the seams of the one before.
  auto soft = resized(reduced, widthOf(reduced), heightOf(reduced), CAIRO_FILTER_BILINEAR);
  while (widthOf(soft.get()) * 2 < pixels.width)
    soft = resized(soft.get(), widthOf(soft.get()) * 2, heightOf(soft.get()) * 2,
                   CAIRO_FILTER_BILINEAR);
  soft = resized(soft.get(), pixels.width, pixels.height, CAIRO_FILTER_BILINEAR);
  auto result = empty(pixels.width, pixels.height);
  const Context context(cairo_create(result.get()));
  roundedRectangle(context.get(), pixels.width, pixels.height,
                   desktop::pixels(cornerRadius, scale));
  cairo_set_source_surface(context.get(), soft.get(), 0, 0);
  cairo_fill(context.get());
  return result;
}

}  // namespace desktop
