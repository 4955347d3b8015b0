#include "desktop/screens/monitors.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace desktop {

namespace {

constexpr double dragThreshold = 8;

/// How far outside a stretch a value lies.
int outside(int value, int begin, int length) {
  return std::max({begin - value, value - (begin + length - 1), 0});
}

}  // namespace

int chosenMonitor(const std::vector<Monitor>& monitors, const std::string& name) {
  int primary = monitors.empty() ? -1 : 0;
  for (int i = static_cast<int>(monitors.size()) - 1; i >= 0; --i) {
    const auto& monitor = monitors[static_cast<std::size_t>(i)];
    if (!name.empty() && (name == monitor.name || name == std::to_string(i))) return i;
    if (monitor.isPrimary) primary = i;
  }
  return primary;
}

int monitorAt(const std::vector<Monitor>& monitors, Point point) {
  int nearest = -1;
  int least = std::numeric_limits<int>::max();
  for (std::size_t i = 0; i < monitors.size(); ++i) {
    const auto& area = monitors[i].area;
    const int distance =
        outside(point.x, area.x, area.width) + outside(point.y, area.y, area.height);
    if (distance >= least) continue;
    least = distance;
    nearest = static_cast<int>(i);
  }
  return nearest;
}

Area intersection(const Area& one, const Area& other) {
  const int left = std::max(one.x, other.x);
  const int top = std::max(one.y, other.y);
  const int right = std::min(one.x + one.width, other.x + other.width);
  const int bottom = std::min(one.y + one.height, other.y + other.height);
  if (right <= left || bottom <= top) return {};
  return {left, top, right - left, bottom - top};
}

bool isDrag(double x, double y) { return std::hypot(x, y) > dragThreshold; }

}  // namespace desktop
