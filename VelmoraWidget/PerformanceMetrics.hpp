#pragma once

#include <optional>
#include <string>
#include <vector>

#include "VelmoraWidget/VelmoraSnapshot.hpp"

namespace velmora {

/// The metrics of one day, as one row of a report delivers them.
struct DayMetrics {
  double earnings = 0;  ///< in the account's currency
  double pageViews = 0;
  double rpm = 0;
  double impressions = 0;
  double clicks = 0;
  double cpc = 0;
  double ctr = 0;  ///< in percent

  bool operator==(const DayMetrics&) const = default;
};

/// A value beside an earlier one.
struct Comparison {
  double current = 0;
  double previous = 0;

  /// The change from `previous` to `current`, "(+23 %)"; absent when `previous` is 0. The sign is
  /// that of the unrounded change.
  [[nodiscard]] std::optional<std::string> deltaText() const;
};

/// How a metric's value is printed.
enum class MetricKind { currency, count, percent };

/// One performance metric: yesterday beside the same weekday a week earlier.
struct PerfMetric {
  std::string id;
  std::string title;  ///< in the user's language
  MetricKind kind = MetricKind::count;
  Comparison comparison;
  std::string currency;  ///< ISO 4217 code, for metrics that are amounts

  /// The current value: "€2.55", "4.50 %", "203", "4.51 k".
  [[nodiscard]] std::string valueText() const;
};

/// The six metrics in display order.
std::vector<PerfMetric> perfMetrics(const VelmoraSnapshot& snapshot);

/// A number in the display locale with exactly that many fraction digits.
std::string formatNumber(double value, int fractionDigits);

}  // namespace velmora
