#include "companion/history/report.hpp"

#include <cmath>

namespace companion {

namespace {

/// "NaN" and "inf" read as numbers, but a day cannot have earned them.
velmora::DayMetrics finite(velmora::DayMetrics figures) {
  for (const auto& [key, column, field] : dayFields)
    if (!std::isfinite(figures.*field)) figures.*field = 0;
  return figures;
}

}  // namespace

History historyFrom(const velmora::ReportResponse& report, const std::string& account, Day first,
                    Day last, platform::Instant fetchedAt) {
  const auto rows = velmora::parseReportRows(report.headers, report.rows);
  History history{account, velmora::reportCurrency(report.headers), fetchedAt, {}};
  for (auto date = first; date <= last; date += std::chrono::days{1}) {
    const auto row = rows.find(dayText(date));
    history.days.push_back({date, row == rows.end() ? velmora::DayMetrics{} : finite(row->second)});
  }
  return history;
}

}  // namespace companion
