#pragma once

#include <cairo.h>

#include <vector>

#include "desktop/geometry.hpp"

namespace desktop {

/// The rows of a picture (CAIRO_FORMAT_ARGB32) from its first to its last pixel that is more
/// opaque than not, equal rows together, from the top: the shape of a window that cannot be
/// transparent.
std::vector<Area> opaqueRows(cairo_surface_t* picture);

}  // namespace desktop
