#include "companion/history/chart_palette.hpp"

namespace companion {

using platform::Color;

namespace {

constexpr Color gray(double value) { return {value, value, value, 1}; }

constexpr ChartPalette light{.ground = gray(1),
                             .text = gray(0.13),
                             .faint = gray(0.38),
                             .line = gray(0.88),
                             .bar = {0.78, 0.50, 0.02, 1},
                             .yearBefore = gray(0.52),
                             .goal = {0.08, 0.48, 0.26, 1}};

constexpr ChartPalette dark{.ground = gray(0.12),
                            .text = gray(0.96),
                            .faint = gray(0.72),
                            .line = gray(0.27),
                            .bar = {0.96, 0.76, 0.28, 1},
                            .yearBefore = gray(0.58),
                            .goal = {0.35, 0.82, 0.53, 1}};

}  // namespace

ChartPalette chartPalette(const ChartStyle& style) {
  auto palette = style.dark ? dark : light;
  if (style.highContrast) {
    palette.faint = palette.text;
    palette.line = palette.yearBefore;
    palette.areaOpacity = 0.35;
  }
  if (!style.hasGround) palette.ground.alpha = 0;
  return palette;
}

}  // namespace companion
