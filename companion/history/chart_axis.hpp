#pragma once

#include <vector>

namespace companion {

/// The vertical axis of a chart: round amounts, with zero among them.
struct ChartAxis {
  double low = 0;
  double high = 1;
  double step = 1;  ///< between two ticks

  /// Where an amount stands, from 0 at the top to 1 at the bottom, where the axis ends.
  [[nodiscard]] double position(double amount) const;
  /// The amounts at its lines, from below.
  [[nodiscard]] std::vector<double> ticks() const;
};

/// An axis that holds all amounts from the least to the most.
ChartAxis chartAxis(double least, double most);

}  // namespace companion
