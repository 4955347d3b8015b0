#include "companion/history/chart_geometry.hpp"

#include <algorithm>
#include <cmath>

#include "VelmoraWidget/CurrencyFormat.hpp"
#include "platform/foundation/formatting.hpp"
#include "platform/foundation/text.hpp"

namespace companion {

namespace {

constexpr double farAbove = 4;  // times the highest bar
constexpr double labelGap = 8;

/// Chinese, Japanese and Korean characters are as wide as they are high.
bool isWide(const std::string& cluster) {
  return cluster.size() >= 3 && static_cast<unsigned char>(cluster.front()) >= 0xE3;
}

double highestBar(const ChartModel& model) {
  double highest = 0;
  for (const auto& bar : model.bars)
    highest = std::max({highest, bar.earnings, bar.yearBefore.value_or(0)});
  return highest;
}

double widestLabel(const ChartModel& model, bool isShort, double fontSize) {
  double widest = 0;
  for (const auto& bar : model.bars)
    widest = std::max(widest, widestText(isShort ? bar.shortLabel : bar.label, fontSize));
  return widest;
}

}  // namespace

double widestText(const std::string& text, double fontSize) {
  double ems = 0;
  for (const auto& cluster : platform::graphemeClusters(text)) ems += isWide(cluster) ? 1.05 : 0.62;
  return ems * fontSize;
}

double axisFontSize(const ChartStyle& style) { return 11 * style.textScale; }

bool showsGoal(const ChartModel& model) {
  const double highest = highestBar(model);
  return model.goal && (highest <= 0 || *model.goal <= farAbove * highest);
}

ChartAxis chartAxis(const ChartModel& model) {
  double least = 0;
  for (const auto& bar : model.bars)
    least = std::min({least, bar.earnings, bar.yearBefore.value_or(0)});
  return chartAxis(least, std::max(highestBar(model), showsGoal(model) ? *model.goal : 0));
}

std::vector<std::string> axisLabels(const ChartModel& model, const ChartAxis& axis) {
  constexpr double mostDigits = 9;
  const auto locale = velmora::displayLocale();
  const auto needed =
      static_cast<int>(std::clamp(-std::floor(std::log10(axis.step)), 0.0, mostDigits));
  const int own = platform::currencyFractionDigits(model.currency).value_or(needed);
  std::vector<std::string> labels;
  for (const double tick : axis.ticks()) {
    // Half a euro is "€0.50"; what is less than a cent has no currency's form.
    const auto text =
        needed <= own ? platform::currencyText(tick, model.currency, needed == 0 ? 0 : own, locale)
                      : std::nullopt;
    labels.push_back(text ? *text : platform::decimalText(tick, needed, locale).value_or(""));
  }
  return labels;
}

ChartColumns chartColumns(const ChartModel& model, const ChartStyle& style) {
  const double room = std::max(0.0, style.width - 2 * chartInset);
  double labels = 0;
  for (const auto& label : axisLabels(model, chartAxis(model)))
    labels = std::max(labels, widestText(label, axisFontSize(style)));
  const double gutter = std::min(labels + labelGap, room / 3);
  const auto count = static_cast<double>(std::max<std::size_t>(1, model.bars.size()));
  return {chartInset + gutter, (room - gutter) / count, chartInset + room};
}

ChartLabels chartLabels(const ChartModel& model, const ChartStyle& style) {
  const double slot = chartColumns(model, style).slot;
  const double size = axisFontSize(style);
  const double full = widestLabel(model, false, size) + labelGap;
  const bool isDaily = model.period.unit == ChartPeriod::Unit::day;
  if (full <= slot) return {};
  // A letter says which month it is only among its neighbours.
  if (!isDaily && widestLabel(model, true, size) <= slot) return {1, true};
  const std::size_t unit = isDaily && model.bars.size() > 7 ? 7 : 1;
  const double units = slot > 0 ? std::ceil(full / (slot * static_cast<double>(unit))) : 1;
  return {unit * static_cast<std::size_t>(std::clamp(units, 1.0, 1000.0)), false};
}

std::optional<std::size_t> barAt(const ChartModel& model, const ChartStyle& style, double x) {
  const auto columns = chartColumns(model, style);
  const double fromLeading = style.rightToLeft ? style.width - x : x;
  const double position = (fromLeading - columns.left) / columns.slot;
  const bool isBar = position >= 0 && position < static_cast<double>(model.bars.size());
  return isBar ? std::optional(static_cast<std::size_t>(position)) : std::nullopt;
}

}  // namespace companion
