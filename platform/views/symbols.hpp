#pragma once

#include <string>

#include "platform/views/geometry.hpp"
#include "platform/views/typesetter.hpp"
#include "platform/views/views.hpp"

namespace platform {

/// "circle.hexagongrid.fill" and so on.
std::string symbolName(Symbol symbol);

/// The room of a symbol beside text of that size.
Size symbolSize(Symbol symbol, double fontSize);

/// Fills a symbol in the context's colour.
void paintSymbol(cairo_t* context, Symbol symbol, const Rect& frame);

}  // namespace platform
