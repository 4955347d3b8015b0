#include "companion/history/summary.hpp"

#include <algorithm>
#include <array>

namespace companion {

namespace chr = std::chrono;

namespace {

using Days = std::span<const HistoryDay>;

constexpr chr::days estimatedFrom{35};  // five of each weekday
constexpr std::size_t daysOfWeek = 7;

bool hasEvents(const HistoryDay& day) { return day.figures != velmora::DayMetrics{}; }

/// The part of the days from one to before another; both may lie outside.
Days between(Days days, Day from, Day before) {
  const auto later = [](const HistoryDay& day, Day date) { return day.date < date; };
  const auto first = std::lower_bound(days.begin(), days.end(), from, later);
  return {first, std::lower_bound(first, days.end(), before, later)};
}

/// The mean of each weekday, from Sunday; of a weekday without a day, the mean of all.
std::array<double, daysOfWeek> weekdayMeans(Days days) {
  std::array<double, daysOfWeek> sums{};
  std::array<int, daysOfWeek> counts{};
  for (const auto& day : days) {
    const auto weekday = chr::weekday{day.date}.c_encoding();
    sums.at(weekday) += day.figures.earnings;
    ++counts.at(weekday);
  }
  const double otherwise = meanOf(days).value_or(0);
  for (std::size_t i = 0; i < daysOfWeek; ++i)
    sums.at(i) = counts.at(i) == 0 ? otherwise : sums.at(i) / counts.at(i);
  return sums;
}

}  // namespace

double sumOf(Days days) {
  double sum = 0;
  for (const auto& day : days) sum += day.figures.earnings;
  return sum;
}

std::optional<double> meanOf(Days days) {
  if (days.empty()) return std::nullopt;
  return sumOf(days) / static_cast<double>(days.size());
}

Day firstOpenDay(const History& history) {
  if (history.days.empty()) return {};
  const auto& last = history.days.back();
  return hasEvents(last) ? last.date : last.date - chr::days{1};
}

Days daysSinceFirstEvent(const History& history) {
  return {std::find_if(history.days.begin(), history.days.end(), hasEvents), history.days.end()};
}

std::optional<double> monthEstimate(const History& history) {
  const auto known = daysSinceFirstEvent(history);
  if (known.empty()) return std::nullopt;
  const auto open = firstOpenDay(history);
  const auto over = between(known, open - estimatedFrom, open);
  if (over.size() < daysOfWeek) return std::nullopt;
  const auto means = weekdayMeans(over);
  const chr::year_month_day today{history.days.back().date};
  const Day first = today.year() / today.month() / 1;
  if (history.days.front().date > first) return std::nullopt;
  const Day next = (today.year() / today.month() + chr::months{1}) / 1;
  const auto month = between(known, first, next);
  double estimate = sumOf(between(month, first, open));
  for (auto date = std::max(first, open); date < next; date += chr::days{1}) {
    const auto soFar = sumOf(between(month, date, date + chr::days{1}));
    estimate += std::max(soFar, means.at(chr::weekday{date}.c_encoding()));
  }
  return estimate;
}

}  // namespace companion
