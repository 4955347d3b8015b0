#include "platform/views/symbols.hpp"

#include <cairo.h>

#include <cmath>
#include <numbers>

namespace platform {

namespace {

constexpr double fullTurn = 2 * std::numbers::pi;

void paintDisc(cairo_t* context, double x, double y, double radius) {
  cairo_new_path(context);
  cairo_arc(context, x, y, radius, 0, fullTurn);
  cairo_fill(context);
}

/// Seven discs: one in the centre and six around it, two of them level with the centre.
void paintHexagonGrid(cairo_t* context, const Rect& frame) {
  const double x = frame.x + frame.width / 2;
  const double y = frame.y + frame.height / 2;
  const double pitch = frame.width * 0.36;  // between centres
  const double radius = frame.width * 0.152;
  paintDisc(context, x, y, radius);
  for (int i = 0; i < 6; ++i) {
    const double angle = fullTurn * i / 6;
    paintDisc(context, x + pitch * std::cos(angle), y + pitch * std::sin(angle), radius);
  }
}

/// A triangle with slightly rounded corners: around a smaller triangle's corners, clockwise, an
/// arc leads from the direction of the one edge's outside to that of the next.
void paintTriangle(cairo_t* context, const Rect& frame, bool up) {
  const double rounding = frame.width * 0.08;
  const double inset = rounding * 1.6;
  const double tip = rounding * 1.9;
  const double middle = frame.width / 2;
  const double slope = std::atan2(frame.height - rounding - tip, middle - inset);
  const double steep = fullTurn / 4 - slope;  // between an edge's outside and the level
  cairo_save(context);
  cairo_translate(context, frame.x, up ? frame.y : frame.y + frame.height);
  if (!up) cairo_scale(context, 1, -1);
  cairo_new_path(context);
  cairo_arc(context, middle, tip, rounding, fullTurn / 2 + steep, fullTurn - steep);
  cairo_arc(context, frame.width - inset, frame.height - rounding, rounding, -steep, fullTurn / 4);
  cairo_arc(context, inset, frame.height - rounding, rounding, fullTurn / 4, fullTurn / 2 + steep);
  cairo_close_path(context);
  cairo_fill(context);
  cairo_restore(context);
}

}  // namespace

std::string symbolName(Symbol symbol) {
  switch (symbol) {
    case Symbol::triangleUp:
      return "arrowtriangle.up.fill";
    case Symbol::triangleDown:
      return "arrowtriangle.down.fill";
    case Symbol::hexagonGrid:
      break;
  }
  return "circle.hexagongrid.fill";
}

Size symbolSize(Symbol symbol, double fontSize) {
  if (symbol == Symbol::hexagonGrid) return {fontSize * 1.2, fontSize * 1.1};
  return {fontSize * 1.1, fontSize};
}

void paintSymbol(cairo_t* context, Symbol symbol, const Rect& frame) {
  if (symbol == Symbol::hexagonGrid) {
    paintHexagonGrid(context, frame);
  } else {
    paintTriangle(context, frame, symbol == Symbol::triangleUp);
  }
}

}  // namespace platform
