#pragma once

#include <string>

#include "platform/views/views.hpp"

namespace velmora {

/// A circular gauge: a faint track, an arc for the fraction reached, the percentage in the middle.
/// Everything turns green when the goal is reached.
struct ProgressRing {
  double progress = 0;  ///< fraction of the goal; may lie outside 0 to 1
  double diameter = 0;  ///< points; half of the line lies outside
  double lineWidth = 0;
  double centerFontSize = 0;
  platform::Color idleTextColor = platform::Color::white;  ///< while the goal is not reached

  [[nodiscard]] platform::View body() const;

  /// "92 %", rounded half away from zero; "—" when the percentage is no number or needs more
  /// than 64 bits.
  [[nodiscard]] std::string percentText() const;
};

inline constexpr platform::Color ringAccentColor{0.92, 0.70, 0.20, 1};

}  // namespace velmora
