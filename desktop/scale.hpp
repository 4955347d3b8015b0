#pragma once

#include <string>

#include "desktop/geometry.hpp"

namespace desktop {

/// Device pixels per point, in 120ths (the unit of the fractional-scale protocol for Wayland), so
/// that equal scales compare equal.
struct Scale {
  int per120 = 120;

  bool operator==(const Scale&) const = default;
};

/// The nearest scale to a factor; half to eight times.
Scale scaleOf(double factor);

/// Device pixels for a length in points, rounded as the widget's painter rounds them.
int pixels(double points, Scale scale);

/// Points for device pixels, rounded.
int points(int pixels, Scale scale);

/// As an argument of the widget program: "1", "1.5".
std::string scaleText(Scale scale);

/// The scale of an output that tells its size in pixels and in points but not the ratio: the
/// simplest one that gives both lengths, whether the compositor cuts or rounds them. The whole
/// number `otherwise` when there is none.
Scale deducedScale(Extent pixels, Extent points, int otherwise);

}  // namespace desktop
