#include "companion/window/figures.hpp"

#include "VelmoraWidget/CurrencyFormat.hpp"
#include "VelmoraWidget/PerformanceMetrics.hpp"
#include "VelmoraWidget/WidgetComponents.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedFormat;
using platform::localizedString;
using velmora::Comparison;
using velmora::VelmoraSnapshot;

namespace {

constexpr const char* unknown = "—";

Figure compared(const std::string& title, const std::string& value, const std::string& note,
                const Comparison& comparison) {
  Figure figure{.title = title, .value = value, .note = note};
  auto change = comparison.deltaText();
  if (!change) return figure;
  figure.change = change->substr(1, change->size() - 2);  // without the brackets
  figure.isUp = comparison.current >= comparison.previous;
  figure.spokenChange = velmora::WidgetDelta{comparison}.spokenText();
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
          {{.title = localizedString("Today"), .value = amount(snapshot.today)},
           row(localizedString("Yesterday"),
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

FigureGroup performance(const VelmoraSnapshot& snapshot) {
  FigureGroup group{localizedString("Performance · Yesterday"), {}};
  for (const auto& metric : velmora::perfMetrics(snapshot)) {
    auto before = metric;
    before.comparison.current = metric.comparison.previous;
    group.figures.push_back(compared(metric.title, metric.valueText(),
                                     localizedFormat("A week before: %s", {before.valueText()}),
                                     metric.comparison));
  }
  return group;
}

}  // namespace

std::vector<FigureGroup> figureGroups(const VelmoraSnapshot& snapshot) {
  return {earnings(snapshot), payments(snapshot), performance(snapshot)};
}

}  // namespace companion::window
