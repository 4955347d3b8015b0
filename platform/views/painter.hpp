#pragma once

#include <string>

#include "platform/views/draw_list.hpp"

namespace platform {

// Painters walk the draw list. The corners outside the rounded ones are transparent. The same list
// always gives the same bytes. Failures throw std::runtime_error.

/// Draws into a context whose unit is one point.
void paint(const DrawList& list, cairo_t* context);

/// A PNG file with the list's scale of pixels to a point, 8 bits for each of RGBA, at least one
/// pixel in each direction.
std::string paintPng(const DrawList& list);

/// Files of the widget's size in points.
std::string paintSvg(const DrawList& list);
std::string paintPdf(const DrawList& list);

}  // namespace platform
