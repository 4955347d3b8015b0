#include "companion/history/chart_axis.hpp"

#include <algorithm>
#include <cmath>

namespace companion {

namespace {

constexpr double linesWanted = 4;
constexpr double largest = 1e300;  // whatever is beyond is drawn there

/// The next of 1, 2, 5 and their tenfolds.
double roundStep(double least) {
  const double power = std::pow(10, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 5.0})
    if (factor * power >= least * (1 - 1e-9)) return factor * power;
  return 10 * power;
}

}  // namespace

double ChartAxis::position(double amount) const {
  return std::clamp((high - amount) / (high - low), 0.0, 1.0);
}

std::vector<double> ChartAxis::ticks() const {
  std::vector<double> amounts;
  const auto lines = std::lround((high - low) / step);
  for (long i = 0; i <= lines; ++i) amounts.push_back(low + static_cast<double>(i) * step);
  return amounts;
}

ChartAxis chartAxis(double least, double most) {
  const double bottom = std::clamp(least, -largest, 0.0);
  const double top = std::clamp(most, 0.0, largest);
  if (!(top > bottom)) return {};
  ChartAxis axis;
  axis.step = roundStep((top - bottom) / linesWanted);
  axis.low = std::floor(bottom / axis.step) * axis.step;
  axis.high = std::ceil(top / axis.step) * axis.step;
  return axis;
}

}  // namespace companion
