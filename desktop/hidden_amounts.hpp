#pragma once

#include "desktop/scale.hpp"
#include "desktop/widget_answer.hpp"

namespace desktop {

/// What is left of a picture whose amounts are hidden: its colours, one for each square of some
/// points, opaque. Small enough to be kept.
Picture reduced(cairo_surface_t* picture, Scale scale);

/// A picture of that size made of what is left: soft inside, with the widget's sharp edges and
/// round corners.
Picture blurred(cairo_surface_t* reduced, Extent pixels, Scale scale);

}  // namespace desktop
