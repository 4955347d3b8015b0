#include "platform/views/painter.hpp"

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>
#include <png.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <memory>
#include <numbers>
#include <regex>
#include <stdexcept>

#include "platform/foundation/raii.hpp"
#include "platform/views/symbols.hpp"

namespace platform {

namespace {

using Surface = Owned<cairo_surface_t, cairo_surface_destroy>;
using Context = Owned<cairo_t, cairo_destroy>;
using Pattern = Owned<cairo_pattern_t, cairo_pattern_destroy>;

constexpr double quarterTurn = std::numbers::pi / 2;

void check(cairo_status_t status) {
  if (status != CAIRO_STATUS_SUCCESS)
    throw std::runtime_error(std::string("cannot draw: ") + cairo_status_to_string(status));
}

void roundedRectangle(cairo_t* context, const Rect& rect, double radius) {
  const double right = rect.x + rect.width - radius;
  const double bottom = rect.y + rect.height - radius;
  const double left = rect.x + radius;
  const double top = rect.y + radius;
  cairo_new_path(context);
  cairo_arc(context, right, top, radius, -quarterTurn, 0);
  cairo_arc(context, right, bottom, radius, 0, quarterTurn);
  cairo_arc(context, left, bottom, radius, quarterTurn, 2 * quarterTurn);
  cairo_arc(context, left, top, radius, 2 * quarterTurn, 3 * quarterTurn);
  cairo_close_path(context);
}

/// A rectangle with its upper and its lower corners rounded.
void areaPath(cairo_t* context, const Rect& area, double topRadius, double bottomRadius) {
  const double largest = std::max(0.0, std::min(area.width, area.height) / 2);
  const double top = std::min(topRadius, largest);
  const double bottom = std::min(bottomRadius, largest);
  const double right = area.x + area.width;
  const double base = area.y + area.height;
  cairo_new_path(context);
  cairo_arc(context, right - top, area.y + top, top, -quarterTurn, 0);
  cairo_arc(context, right - bottom, base - bottom, bottom, 0, quarterTurn);
  cairo_arc(context, area.x + bottom, base - bottom, bottom, quarterTurn, 2 * quarterTurn);
  cairo_arc(context, area.x + top, area.y + top, top, 2 * quarterTurn, 3 * quarterTurn);
  cairo_close_path(context);
}

/// Strokes diagonals over an area, which the context is clipped to.
void hatch(cairo_t* context, const Rect& area, double lineWidth) {
  constexpr double spacing = 3;  // in widths of the line
  cairo_new_path(context);
  for (double x = area.x - area.height; x < area.x + area.width; x += spacing * lineWidth) {
    cairo_move_to(context, x, area.y + area.height);
    cairo_line_to(context, x + area.height, area.y);
  }
  cairo_set_line_width(context, lineWidth);
  cairo_stroke(context);
}

/// Draws what an item holds, in the context's colour.
struct PaintContent {
  cairo_t* context;
  const DrawList& list;
  const DrawItem& item;

  void operator()(const TextItem& text) const {
    cairo_save(context);
    cairo_translate(context, item.frame.x, item.frame.y);
    text.shaped->paint(context, text.placement);
    cairo_restore(context);
  }
  void operator()(const SymbolItem& symbol) const {
    paintSymbol(context, symbol.symbol, item.frame);
  }
  void operator()(const ArcItem& arc) const {
    const double x = item.frame.x + item.frame.width / 2;
    const double y = item.frame.y + item.frame.height / 2;
    // Angles count from three o'clock.
    const double from = (arc.from * 4 - 1) * quarterTurn;
    const double to = (arc.to * 4 - 1) * quarterTurn;
    cairo_new_path(context);  // else a line would lead here from the last text
    cairo_arc(context, x, y, item.frame.width / 2, from, to);
    if (arc.to - arc.from >= 1) cairo_close_path(context);
    cairo_set_line_width(context, arc.width);
    cairo_set_line_cap(context,
                       arc.cap == LineCap::round ? CAIRO_LINE_CAP_ROUND : CAIRO_LINE_CAP_BUTT);
    cairo_set_line_join(context, CAIRO_LINE_JOIN_MITER);
    cairo_set_miter_limit(context, 10);
    cairo_stroke(context);
  }
  void operator()(const DividerItem&) const {
    // On pixels never thinner than one, where it would fade.
    const auto target = cairo_surface_get_type(cairo_get_target(context));
    const double thinnest = target == CAIRO_SURFACE_TYPE_IMAGE ? 1 / list.scale : 0;
    const double height = std::max(item.frame.height, thinnest);
    cairo_rectangle(context, item.frame.x, item.frame.y, item.frame.width, height);
    cairo_fill(context);
  }
  void operator()(const RectangleItem& rectangle) const {
    const auto& [fill, topRadius, bottomRadius, lineWidth] = rectangle.style;
    const auto& frame = item.frame;
    if (fill == Fill::solid) {
      areaPath(context, frame, topRadius, bottomRadius);
      cairo_fill(context);
      return;
    }
    cairo_save(context);
    areaPath(context, frame, topRadius, bottomRadius);
    cairo_clip(context);
    if (fill == Fill::hatched) hatch(context, frame, lineWidth);
    areaPath(context, frame, topRadius, bottomRadius);
    cairo_set_line_width(context, 2 * lineWidth);  // the outer half is cut off
    cairo_stroke(context);
    cairo_restore(context);
  }
  void operator()(const RuleItem& rule) const {
    const auto& frame = item.frame;
    const double y = frame.y + frame.height / 2;
    const double dashes[] = {rule.dash, rule.dash / 2};
    cairo_save(context);
    if (rule.dash > 0) cairo_set_dash(context, dashes, 2, 0);
    cairo_new_path(context);
    cairo_move_to(context, frame.x, y);
    cairo_line_to(context, frame.x + frame.width, y);
    cairo_set_line_width(context, frame.height);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_BUTT);
    cairo_stroke(context);
    cairo_restore(context);
  }
  void operator()(const GradientItem& gradient) const {
    const auto& frame = item.frame;
    const Pattern pattern(cairo_pattern_create_linear(0, frame.y, 0, frame.y + frame.height));
    const auto stop = [&](double offset, const Color& color) {
      cairo_pattern_add_color_stop_rgba(pattern.get(), offset, color.red, color.green, color.blue,
                                        color.alpha);
    };
    stop(0, gradient.colors.top);
    stop(1, gradient.colors.bottom);
    cairo_set_source(context, pattern.get());
    roundedRectangle(context, frame, list.cornerRadius);
    cairo_fill(context);
  }
};

cairo_status_t append(void* bytes, const unsigned char* data, unsigned int length) {
  static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

void paintOn(cairo_surface_t* surface, const DrawList& list, double scale) {
  const Context context(cairo_create(surface));
  cairo_scale(context.get(), scale, scale);
  paint(list, context.get());
  check(cairo_status(context.get()));
}

/// Undoes Cairo's multiplication with the opacity, in place. Only the edges of the corners are
/// neither opaque nor empty.
void makeStraight(std::uint32_t* row, int width) {
  for (int x = 0; x < width; ++x) {
    const std::uint32_t pixel = row[x];
    const std::uint32_t alpha = pixel >> 24U;
    if (alpha == 0 || alpha == 255) continue;
    std::uint32_t straight = alpha << 24U;
    for (const unsigned shift : {16U, 8U, 0U}) {
      const std::uint32_t value = (pixel >> shift) & 0xFFU;
      straight |= std::min(255U, (value * 255 + alpha / 2) / alpha) << shift;
    }
    row[x] = straight;
  }
}

/// Fast rather than small: the usual filters cost more than all the drawing.
std::string encodePng(cairo_surface_t* surface, int width, int height) {
  cairo_surface_flush(surface);
  auto* data = cairo_image_surface_get_data(surface);
  const int stride = cairo_image_surface_get_stride(surface);
  for (int y = 0; y < height; ++y)
    makeStraight(reinterpret_cast<std::uint32_t*>(data + std::ptrdiff_t{stride} * y), width);
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(width);
  image.height = static_cast<png_uint_32>(height);
  // Cairo's pixels are native 32-bit words of ARGB.
  image.format = std::endian::native == std::endian::little ? PNG_FORMAT_BGRA : PNG_FORMAT_ARGB;
  image.flags = PNG_IMAGE_FLAG_FAST;
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
  const auto bytes = std::make_unique_for_overwrite<char[]>(size);
  if (png_image_write_to_memory(&image, bytes.get(), &size, 0, data, stride, nullptr) == 0)
    throw std::runtime_error(std::string("cannot write PNG: ") + image.message);
  return {bytes.get(), size};
}

}  // namespace

void paint(const DrawList& list, cairo_t* context) {
  for (const auto& item : list.items) {
    const auto& color = item.color;
    cairo_set_source_rgba(context, color.red, color.green, color.blue, color.alpha);
    std::visit(PaintContent{context, list, item}, item.content);
  }
}

std::string paintPng(const DrawList& list) {
  const auto pixels = [&list](double length) {
    return std::max(1, static_cast<int>(std::lround(length * list.scale)));
  };
  const int width = pixels(list.size.width);
  const int height = pixels(list.size.height);
  const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
  check(cairo_surface_status(surface.get()));
  constexpr double leastScale = 1e-6;  // Cairo takes no matrix that it cannot invert
  paintOn(surface.get(), list, std::max(list.scale, leastScale));
  return encodePng(surface.get(), width, height);
}

std::string paintSvg(const DrawList& list) {
  std::string bytes;
  Surface surface(
      cairo_svg_surface_create_for_stream(append, &bytes, list.size.width, list.size.height));
  check(cairo_surface_status(surface.get()));
  paintOn(surface.get(), list, 1);
  cairo_surface_finish(surface.get());
  check(cairo_surface_status(surface.get()));
  // Cairo numbers the surfaces of a process, which tells two drawings of one list apart.
  static const std::regex surfaceNumber(" id=\"surface[0-9]+\"");
  return std::regex_replace(bytes, surfaceNumber, "");
}

std::string paintPdf(const DrawList& list) {
  std::string bytes;
  Surface surface(
      cairo_pdf_surface_create_for_stream(append, &bytes, list.size.width, list.size.height));
  check(cairo_surface_status(surface.get()));
  // Cairo would write the current time, and no two files would be the same.
  cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE,
                                 "1970-01-01T00:00:00Z");
  paintOn(surface.get(), list, 1);
  cairo_surface_finish(surface.get());
  check(cairo_surface_status(surface.get()));
  return bytes;
}

}  // namespace platform
