#pragma once

#include <string>
#include <vector>

#include "desktop/geometry.hpp"

namespace desktop {

struct Monitor {
  std::string name;
  bool isPrimary = false;
  Area area;  ///< device pixels on X11, points on Wayland
};

/// The monitor of that number or name, else the primary one, else the first; its index, or -1 when
/// there is none at all.
int chosenMonitor(const std::vector<Monitor>& monitors, const std::string& name);

/// The monitor that holds a point, else the one nearest to it; -1 when there is none at all.
int monitorAt(const std::vector<Monitor>& monitors, Point point);

/// What two areas share; empty (no width, no height) when nothing.
Area intersection(const Area& one, const Area& other);

/// Whether a pointer that went that far while a button was held drags: farther than a hand
/// trembles. In points.
bool isDrag(double x, double y);

}  // namespace desktop
