#include "companion/history/chart_bars.hpp"

#include <algorithm>

#include "companion/history/summary.hpp"

namespace companion {

namespace chr = std::chrono;

namespace {

chr::year_month monthOf(Day day) {
  const chr::year_month_day date{day};
  return date.year() / date.month();
}

std::vector<ChartBar> dayBars(const History& history, int count) {
  const auto open = firstOpenDay(history);
  std::vector<ChartBar> bars;
  const auto& days = history.days;
  const auto skipped = std::max<std::ptrdiff_t>(0, std::ssize(days) - count);
  for (auto day = days.begin() + skipped; day != days.end(); ++day) {
    const auto before = yearBefore(day->date);
    bars.push_back({.first = day->date,
                    .earnings = day->figures.earnings,
                    .yearBefore = knownEarnings(history, before, before),
                    .isOver = day->date < open});
  }
  return bars;
}

ChartBar monthBar(const History& history, chr::year_month month) {
  const Day first = month / 1;
  const Day end = std::min<Day>(month / chr::last, history.days.back().date);
  const Day known = std::max(first, history.days.front().date);
  return {.first = first,
          .earnings = knownEarnings(history, known, end).value_or(0),
          .yearBefore = knownEarnings(history, yearBefore(first), yearBefore(end)),
          .isOver = Day{month / chr::last} < firstOpenDay(history)};
}

std::vector<ChartBar> monthBars(const History& history, int count) {
  std::vector<ChartBar> bars;
  if (history.days.empty()) return bars;
  const auto current = monthOf(history.days.back().date);
  for (int back = count - 1; back >= 0; --back) {
    const auto month = current - chr::months{back};
    if (back == 0 || Day{month / 1} >= history.days.front().date)
      bars.push_back(monthBar(history, month));
  }
  return bars;
}

}  // namespace

Day yearBefore(Day day) {
  const auto before = chr::year_month_day{day} - chr::years{1};
  return before.ok() ? Day{before} : Day{before.year() / before.month() / chr::last};
}

std::optional<double> knownEarnings(const History& history, Day first, Day last) {
  const auto begun = daysSinceFirstEvent(history);
  if (begun.empty() || last < begun.front().date) return std::nullopt;
  if (first < history.days.front().date || last > history.days.back().date) return std::nullopt;
  const auto at = static_cast<std::size_t>((first - history.days.front().date).count());
  const auto count = static_cast<std::size_t>((last - first).count() + 1);
  return sumOf(std::span(history.days).subspan(at, count));
}

std::vector<ChartBar> chartBars(const History& history, ChartPeriod period) {
  return period.unit == ChartPeriod::Unit::day ? dayBars(history, period.count)
                                               : monthBars(history, period.count);
}

}  // namespace companion
