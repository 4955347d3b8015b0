#include "companion/history/chart_model.hpp"

#include <cmath>

#include "VelmoraWidget/CurrencyFormat.hpp"
#include "companion/history/chart_bars.hpp"
#include "companion/history/summary.hpp"
#include "platform/foundation/date_texts.hpp"
#include "platform/foundation/formatting.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion {

using platform::dateWriter;
using platform::localizedFormat;
using platform::localizedString;

namespace {

bool isDaily(const ChartModel& model) { return model.period.unit == ChartPeriod::Unit::day; }

std::optional<double> usableGoal(const velmora::Objectives& goals, ChartPeriod period) {
  const double goal = period.unit == ChartPeriod::Unit::day ? goals.daily : goals.monthly;
  return std::isfinite(goal) && goal > 0 ? std::optional(goal) : std::nullopt;
}

/// The parts that are not empty.
std::string joined(const std::vector<std::string>& parts, const std::string& separator) {
  std::string text;
  for (const auto& part : parts) {
    if (!part.empty()) text += (text.empty() ? "" : separator) + part;
  }
  return text;
}

void nameBars(ChartModel& model) {
  const auto locale = velmora::displayLocale();
  const auto label = dateWriter(locale, isDaily(model) ? "dMMM" : "LLL");
  const auto shortLabel = dateWriter(locale, isDaily(model) ? "d" : "LLLLL");
  const auto name = dateWriter(locale, isDaily(model) ? "EEEdMMM" : "yMMMM");
  for (auto& bar : model.bars) {
    const auto instant = instantOf(bar.first);
    bar.label = label(instant);
    bar.shortLabel = shortLabel(instant);
    bar.name = name(instant);
  }
}

void describeBars(ChartModel& model) {
  for (auto& bar : model.bars) {
    bar.amount = velmora::formatCurrency(bar.earnings, model.currency);
    if (bar.yearBefore)
      bar.yearBeforeAmount = velmora::formatCurrency(*bar.yearBefore, model.currency);
    const auto before =
        bar.yearBefore ? localizedFormat("%s a year before", {bar.yearBeforeAmount}) : "";
    const auto open = bar.isOver ? "" : localizedString("not over yet");
    const auto goal = model.goal ? localizedFormat("of %s", {model.goalAmount}) : "";
    bar.title = joined({bar.name, open}, " · ");
    bar.note = joined({goal, before}, " · ");
    const auto measured =
        model.goal ? localizedFormat("%s of %s", {bar.amount, model.goalAmount}) : bar.amount;
    bar.phrase = joined({bar.name, measured, before, open}, ", ");
  }
}

/// The mean of the bars that are over; a new account's time before its first event does not count.
std::string meanText(const ChartModel& model, const History& history) {
  const auto begun = daysSinceFirstEvent(history);
  double sum = 0;
  int count = 0;
  for (const auto& bar : model.bars) {
    if (!bar.isOver || begun.empty() || bar.first < begun.front().date) continue;
    sum += bar.earnings;
    ++count;
  }
  if (count == 0) return "";
  const auto mean = velmora::formatCurrency(sum / count, model.currency);
  return isDaily(model) ? localizedFormat("%s a day on average", {mean})
                        : localizedFormat("%s a month on average", {mean});
}

std::optional<double> sumYearBefore(const std::vector<ChartBar>& bars) {
  double sum = 0;
  for (const auto& bar : bars) {
    if (!bar.yearBefore) return std::nullopt;
    sum += *bar.yearBefore;
  }
  return sum;
}

std::vector<ChartFigure> chartFigures(const ChartModel& model, const History& history) {
  const auto amount = [&](double value) { return velmora::formatCurrency(value, model.currency); };
  std::vector<ChartFigure> figures;
  if (const auto before = sumYearBefore(model.bars))
    figures.push_back({localizedString("The same days a year before"), amount(*before)});
  if (const auto estimate = monthEstimate(history)) {
    const auto month =
        dateWriter(velmora::displayLocale(), "LLLL")(instantOf(history.days.back().date));
    figures.push_back({localizedFormat("%s, estimated", {month}), amount(*estimate)});
  }
  return figures;
}

}  // namespace

std::string shortAmount(double amount, const std::string& currency) {
  if (amount != std::trunc(amount)) return velmora::formatCurrency(amount, currency);
  const auto locale = velmora::displayLocale();
  const auto text = platform::currencyText(amount, currency, 0, locale);
  return text ? *text : platform::decimalText(amount, 0, locale).value_or("");
}

ChartModel chartModel(const History& history, const velmora::Objectives& goals,
                      ChartPeriod period) {
  ChartModel model{.period = period,
                   .currency = history.currency,
                   .bars = chartBars(history, period),
                   .goal = usableGoal(goals, period)};
  if (model.goal) model.goalAmount = shortAmount(*model.goal, model.currency);
  model.caption = localizedString(
      "Days are AdSense’s own, in the time zone of your account. The widget counts days in UTC.");
  if (model.bars.empty()) return model;
  nameBars(model);
  describeBars(model);
  double sum = 0;
  for (const auto& bar : model.bars) sum += bar.earnings;
  model.title = platform::dateRangeText(
      instantOf(model.bars.front().first), instantOf(history.days.back().date),
      velmora::displayLocale(), isDaily(model) ? "yMMMd" : "yMMM");
  model.total = velmora::formatCurrency(sum, model.currency);
  model.mean = meanText(model, history);
  model.figures = chartFigures(model, history);
  return model;
}

}  // namespace companion
