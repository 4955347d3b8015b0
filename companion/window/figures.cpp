#include "companion/window/figures.hpp"

#include <cmath>

#include "VelmoraWidget/CurrencyFormat.hpp"
#include "VelmoraWidget/PerformanceMetrics.hpp"
#include "VelmoraWidget/WidgetComponents.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/percent_text.hpp"

namespace companion::window {

using platform::localizedFormat;
using platform::localizedString;
using velmora::Comparison;
using velmora::MetricKind;
using velmora::VelmoraSnapshot;

namespace {

constexpr const char* unknown = "—";

Trend trendOf(double percent) {
  if (std::nearbyint(percent) == 0) return Trend::level;
  return percent > 0 ? Trend::up : Trend::down;
}

Figure compared(const std::string& title, const std::string& value, const std::string& note,
                const Comparison& comparison) {
  Figure figure{.title = title, .value = value, .note = note};
  const double percent =
      (comparison.current - comparison.previous) / std::abs(comparison.previous) * 100;
  if (!std::isfinite(percent)) return figure;  // nothing to compare with
  figure.change = platform::changeText(percent, velmora::displayLocale());
  figure.trend = trendOf(percent);
  figure.spokenChange =
      figure.trend == Trend::level ? *figure.change : velmora::WidgetDelta{comparison}.spokenText();
  return figure;
}

FigureGroup earnings(const VelmoraSnapshot& snapshot) {
  const auto amount = [&](double value) {
    return velmora::formatCurrency(value, snapshot.currency);
  };
  const auto row = [&](const std::string& title, const std::string& note, double value,
                       double before) {
    return compared(title, amount(value), note, {value, before});
  };
  return {localizedString("Earnings"),
          {row(localizedString("Yesterday"),
               localizedFormat("A week before: %s", {amount(snapshot.yesterdayPrevWeek)}),
               snapshot.yesterday, snapshot.yesterdayPrevWeek),
           row(localizedString("Last 7 days"),
               localizedFormat("The 7 days before: %s", {amount(snapshot.prev7)}), snapshot.last7,
               snapshot.prev7),
           row(localizedString("This month"),
               localizedFormat("The same days last year: %s", {amount(snapshot.monthLastYear)}),
               snapshot.monthToDate, snapshot.monthLastYear)}};
}

FigureGroup payments(const VelmoraSnapshot& snapshot) {
  return {localizedString("Payments"),
          {{.title = localizedString("Balance"), .value = snapshot.balance.value_or(unknown)},
           {.title = localizedString("Last payment"),
            .value = snapshot.lastPaymentAmount.value_or(unknown),
            .note = snapshot.lastPaymentDateLabel.value_or("")}}};
}

/// Whole, unlike in the widget: here is room.
std::string valueText(const velmora::PerfMetric& metric, double value) {
  switch (metric.kind) {
    case MetricKind::currency:
      return velmora::formatCurrency(value, metric.currency);
    case MetricKind::percent:
      return platform::percentText(value, 2, velmora::displayLocale());
    case MetricKind::count:
      break;
  }
  return velmora::formatNumber(value, 0);
}

FigureGroup performance(const VelmoraSnapshot& snapshot) {
  FigureGroup group{localizedString("Performance · Yesterday"), {}};
  for (const auto& metric : velmora::perfMetrics(snapshot)) {
    const auto before = valueText(metric, metric.comparison.previous);
    group.figures.push_back(compared(metric.title, valueText(metric, metric.comparison.current),
                                     localizedFormat("A week before: %s", {before}),
                                     metric.comparison));
  }
  return group;
}

}  // namespace

std::vector<FigureGroup> figureGroups(const VelmoraSnapshot& snapshot) {
  return {earnings(snapshot), payments(snapshot), performance(snapshot)};
}

}  // namespace companion::window
