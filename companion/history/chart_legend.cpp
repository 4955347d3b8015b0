#include "companion/history/chart_legend.hpp"

#include <algorithm>

#include "companion/history/chart_geometry.hpp"
#include "companion/history/chart_palette.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion {

using platform::Fill;
using platform::localizedFormat;
using platform::localizedString;
using platform::View;

namespace {

constexpr double gap = 6;

struct Entry {
  View mark;
  std::string title;
};

/// The marks as they are in the plot, as high as the texts beside them.
struct Marks {
  const ChartStyle& style;
  ChartPalette palette = chartPalette(style);
  double size = axisFontSize(style);

  [[nodiscard]] View bar(Fill fill) const {
    return platform::rectangle({.fill = fill, .topRadius = 2})
        .foregroundColor(palette.bar)
        .frame({.width = size * 0.7, .height = size});
  }
  [[nodiscard]] View yearBefore() const {
    const auto area =
        platform::rectangle({}).foregroundColor(palette.yearBefore.opacity(palette.areaOpacity));
    const auto edge = platform::rule({.lineWidth = 1.5}).foregroundColor(palette.yearBefore);
    return platform::plane({{{0, 0, 1, 1}, {}, area}, {{0, 0, 1, 0}, {}, edge}})
        .frame({.width = size, .height = size});
  }
  [[nodiscard]] View goal() const {
    return platform::rule({.lineWidth = 1.5, .dash = 6})
        .foregroundColor(palette.goal)
        .frame({.width = size * 1.9, .height = size});
  }
};

std::vector<Entry> entries(const ChartModel& model, const ChartStyle& style) {
  const Marks marks{style};
  const auto& bars = model.bars;
  std::vector<Entry> list{{marks.bar(Fill::solid), localizedString("Earned")}};
  if (std::any_of(bars.begin(), bars.end(), [](const ChartBar& bar) { return !bar.isOver; }))
    list.push_back({marks.bar(Fill::hatched), localizedString("Not over yet")});
  if (std::any_of(bars.begin(), bars.end(),
                  [](const ChartBar& bar) { return bar.yearBefore.has_value(); }))
    list.push_back({marks.yearBefore(), localizedString("A year before")});
  if (model.goal)
    list.push_back({marks.goal(), showsGoal(model) ? localizedFormat("Goal, %s", {model.goalAmount})
                                                   : localizedFormat("Goal, %s (off the chart)",
                                                                     {model.goalAmount})});
  return list;
}

}  // namespace

View chartLegend(const ChartModel& model, const ChartStyle& style) {
  const double size = axisFontSize(style);
  platform::Views cells;
  double widest = 1;
  for (const auto& [mark, title] : entries(model, style)) {
    widest = std::max(widest, widestText(title, size) + size * 2 + 2 * gap);
    cells.push_back(
        platform::hStack({.spacing = gap}, {mark, platform::text(title)
                                                      .font(platform::Font::system(size))
                                                      .foregroundColor(chartPalette(style).text)}));
  }
  const auto count = static_cast<int>(cells.size());
  int columns = std::clamp(static_cast<int>((style.width - 2 * chartInset) / widest), 1, count);
  if (columns == count - 1) columns = (count + 1) / 2;  // no entry stands alone
  return platform::grid({.columns = columns,
                         .columnSpacing = gap,
                         .rowSpacing = gap,
                         .cellAlignment = platform::HorizontalAlignment::leading},
                        std::move(cells))
      .accessibilityHidden();
}

}  // namespace companion
