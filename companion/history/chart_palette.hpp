#pragma once

#include "companion/history/chart.hpp"
#include "platform/views/style.hpp"

namespace companion {

/// The colours of a chart. Each stands out from the ground by 3 to 1 or more, texts by 4.5.
struct ChartPalette {
  platform::Color ground;
  platform::Color text;
  platform::Color faint;  ///< texts of less weight
  platform::Color line;   ///< behind the bars
  platform::Color bar;
  platform::Color yearBefore;  ///< the upper edge; its area is the same with less opacity
  platform::Color goal;
  double areaOpacity = 0.2;
};

ChartPalette chartPalette(const ChartStyle& style);

}  // namespace companion
