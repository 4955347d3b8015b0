#pragma once

#include <optional>
#include <string>

#include "VelmoraWidget/PerformanceMetrics.hpp"
#include "platform/views/views.hpp"

namespace velmora {

/// The warm gold of headings and of the figure that matters most.
inline constexpr platform::Color accentGold{1.0, 0.84, 0.42, 1};

/// The widget's heading.
struct WidgetTitle {
  [[nodiscard]] platform::View body() const;
};

/// A caption above a figure. Claims all the width it is offered.
struct WidgetStat {
  std::string title;
  std::string value;
  bool prominent = false;

  [[nodiscard]] platform::View body() const;
};

/// An arrow, green up or red down, and the change in percent.
struct WidgetDelta {
  Comparison comparison;

  [[nodiscard]] platform::View body() const;

  /// "up 23 %", for people who do not look.
  [[nodiscard]] std::string spokenText() const;
};

/// A ring towards a goal with one or two captions under it.
struct WidgetRing {
  std::string title;
  double value = 0;  ///< in the account's currency, like the goal
  double goal = 0;
  std::optional<std::string> subtitle;
  double diameter = 60;  ///< points

  [[nodiscard]] platform::View body() const;
};

}  // namespace velmora
