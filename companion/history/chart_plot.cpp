#include "companion/history/chart_plot.hpp"

#include <algorithm>
#include <cmath>

#include "companion/history/chart_geometry.hpp"
#include "companion/history/chart_palette.hpp"

namespace companion {

using platform::Alignment;
using platform::Fill;
using platform::Font;
using platform::Pinned;
using platform::Rect;
using platform::View;

namespace {

constexpr double barShare = 0.62;  // of the slot
constexpr double widestBar = 48;
constexpr double yearBeforeShare = 0.94;  // seen on both sides of the bar

/// What all parts of the plot are made from.
struct Plot {
  const ChartModel& model;
  const ChartStyle& style;
  ChartAxis axis = chartAxis(model);
  ChartColumns columns = chartColumns(model, style);
  ChartPalette palette = chartPalette(style);
  double width = std::max(1.0, style.width - 2 * chartInset);
  std::vector<Pinned> parts;

  /// A part of the plane from a place in points to another, both from the chart's leading edge.
  [[nodiscard]] Rect part(double left, double right, double top, double bottom) const {
    return {(left - chartInset) / width, top, (right - left) / width, bottom - top};
  }
  /// The middle share of a bar's slot, between two amounts.
  [[nodiscard]] Rect slotPart(std::size_t index, double share, double from, double to) const {
    const double left =
        columns.left + columns.slot * (static_cast<double>(index) + 0.5 - share / 2);
    const double a = axis.position(from);
    const double b = axis.position(to);
    return part(left, left + columns.slot * share, std::min(a, b), std::max(a, b));
  }
};

View axisText(const std::string& content, const Plot& plot) {
  return platform::text(content)
      .font(Font::system(axisFontSize(plot.style)))
      .foregroundColor(plot.palette.faint)
      .minimumScaleFactor(0.5)
      .lineLimit(1)
      .accessibilityHidden();
}

void addLines(Plot& plot) {
  const auto labels = axisLabels(plot.model, plot.axis);
  const auto ticks = plot.axis.ticks();
  for (std::size_t i = 0; i < ticks.size(); ++i) {
    const double y = plot.axis.position(ticks[i]);
    const bool isZero = std::abs(ticks[i]) < plot.axis.step / 2;
    plot.parts.push_back(
        {plot.part(plot.columns.left, plot.columns.right, y, y), Alignment::leading,
         platform::rule({}).foregroundColor(isZero ? plot.palette.yearBefore : plot.palette.line)});
    constexpr double gap = 6;
    plot.parts.push_back({plot.part(chartInset, plot.columns.left - gap, y, y), Alignment::trailing,
                          axisText(labels[i], plot)});
  }
}

void addHighlight(Plot& plot) {
  const auto index = plot.style.highlighted;
  if (!index || *index >= plot.model.bars.size()) return;
  const auto part = plot.slotPart(*index, 1, plot.axis.low, plot.axis.high);
  const auto band = [&](Fill fill, double opacity) {
    plot.parts.push_back({part, Alignment::center,
                          platform::rectangle({.fill = fill, .topRadius = 3, .bottomRadius = 3})
                              .foregroundColor(plot.palette.text.opacity(opacity))});
  };
  band(Fill::solid, 0.08);
  band(Fill::outlined, 0.5);
}

/// The year before: a pale area as wide as the slot under a firm edge.
void addYearBefore(Plot& plot, std::size_t index) {
  const auto& before = plot.model.bars[index].yearBefore;
  if (!before || *before == 0) return;
  const auto& color = plot.palette.yearBefore;
  const double share = std::min(yearBeforeShare, 1.5 * widestBar / plot.columns.slot);
  plot.parts.push_back(
      {plot.slotPart(index, share, 0, *before), Alignment::center,
       platform::rectangle({}).foregroundColor(color.opacity(plot.palette.areaOpacity))});
  plot.parts.push_back({plot.slotPart(index, share, *before, *before), Alignment::leading,
                        platform::rule({.lineWidth = 1.5}).foregroundColor(color)});
}

void addBar(Plot& plot, std::size_t index) {
  const auto& bar = plot.model.bars[index];
  const double share = std::min(barShare, widestBar / plot.columns.slot);
  const double radius = std::min(3.0, plot.columns.slot * share / 4);
  platform::RectangleStyle style{.fill = bar.isOver ? Fill::solid : Fill::hatched};
  (bar.earnings < 0 ? style.bottomRadius : style.topRadius) = radius;
  plot.parts.push_back({plot.slotPart(index, share, 0, bar.earnings), Alignment::center,
                        platform::rectangle(style).foregroundColor(plot.palette.bar)});
}

/// The room of a bar, which is what a screen reader reads.
void addPhrase(Plot& plot, std::size_t index) {
  plot.parts.push_back({plot.slotPart(index, 1, plot.axis.low, plot.axis.high), Alignment::center,
                        platform::text("").accessibilityLabel(plot.model.bars[index].phrase)});
}

void addGoal(Plot& plot) {
  if (!showsGoal(plot.model)) return;
  const double y = plot.axis.position(*plot.model.goal);
  plot.parts.push_back(
      {plot.part(plot.columns.left, plot.columns.right, y, y), Alignment::leading,
       platform::rule({.lineWidth = 1.5, .dash = 6}).foregroundColor(plot.palette.goal)});
}

}  // namespace

View chartPlot(const ChartModel& model, const ChartStyle& style) {
  Plot plot{.model = model, .style = style};
  addLines(plot);
  addHighlight(plot);
  for (std::size_t i = 0; i < model.bars.size(); ++i) addYearBefore(plot, i);
  for (std::size_t i = 0; i < model.bars.size(); ++i) addBar(plot, i);
  addGoal(plot);
  for (std::size_t i = 0; i < model.bars.size(); ++i) addPhrase(plot, i);
  return platform::plane(std::move(plot.parts));
}

View chartNames(const ChartModel& model, const ChartStyle& style) {
  Plot plot{.model = model, .style = style};
  const auto [every, isShort] = chartLabels(model, style);
  const double size = axisFontSize(style);
  for (std::size_t i = 0; i < model.bars.size(); i += every) {
    const auto& label = isShort ? model.bars[i].shortLabel : model.bars[i].label;
    const double left = plot.columns.left + plot.columns.slot * static_cast<double>(i);
    const double right = left + plot.columns.slot * static_cast<double>(every);
    const bool fits = right <= plot.columns.right + 0.5 ||
                      left + widestText(label, size) <= plot.columns.right + chartInset;
    if (!fits) continue;
    plot.parts.push_back({plot.part(left, right, 0, 1),
                          every == 1 ? Alignment::center : Alignment::leading,
                          axisText(label, plot)});
  }
  return platform::plane(std::move(plot.parts)).frame({.height = size * 1.3});
}

}  // namespace companion
