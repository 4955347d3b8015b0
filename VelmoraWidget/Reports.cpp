#include "VelmoraWidget/Reports.hpp"

#include <algorithm>

#include "platform/foundation/text.hpp"

namespace velmora {

namespace {

using platform::QueryItem;

struct MetricColumn {
  const char* name;
  double DayMetrics::* field;
  double scale;
};

constexpr MetricColumn metricColumns[] = {
    {"ESTIMATED_EARNINGS", &DayMetrics::earnings, 1},
    {"PAGE_VIEWS", &DayMetrics::pageViews, 1},
    {"PAGE_VIEWS_RPM", &DayMetrics::rpm, 1},
    {"IMPRESSIONS", &DayMetrics::impressions, 1},
    {"CLICKS", &DayMetrics::clicks, 1},
    {"COST_PER_CLICK", &DayMetrics::cpc, 1},
    {"PAGE_VIEWS_CTR", &DayMetrics::ctr, 100}};  // a ratio becomes percent

using ColumnIndex = std::map<std::string, std::size_t>;

ColumnIndex columnIndex(const std::vector<Header>& headers) {
  ColumnIndex index;
  for (std::size_t position = 0; position < headers.size(); ++position) {
    if (headers[position].name) index[*headers[position].name] = position;
  }
  return index;
}

/// The text of a row's cell in a named column.
std::optional<std::string> cellText(const Row& row, const ColumnIndex& columns,
                                    const char* column) {
  const auto position = columns.find(column);
  if (position == columns.end() || position->second >= row.cells.size()) return std::nullopt;
  return row.cells[position->second].value;
}

double numberOrZero(const std::optional<std::string>& text) {
  return text ? platform::numberFromText(*text).value_or(0) : 0;
}

std::string partText(const std::optional<std::int64_t>& part) {
  return std::to_string(part.value_or(0));
}

}  // namespace

platform::DayFormatter makeDayFormatter() { return {"en_US_POSIX", "yyyy-MM-dd"}; }

std::vector<QueryItem> dateQueryItems(const std::string& prefix, platform::Instant date) {
  const auto day = reportCalendar.components(date);
  return {{prefix + ".year", partText(day.year)},
          {prefix + ".month", partText(day.month)},
          {prefix + ".day", partText(day.day)}};
}

std::vector<QueryItem> dailyReportItems(platform::Instant first, platform::Instant last) {
  std::vector<QueryItem> items{{"dateRange", "CUSTOM"}, {"dimensions", "DATE"}};
  for (const auto& column : metricColumns) items.push_back({"metrics", column.name});
  for (auto& item : dateQueryItems("startDate", first)) items.push_back(std::move(item));
  for (auto& item : dateQueryItems("endDate", last)) items.push_back(std::move(item));
  return items;
}

DayTable parseReportRows(const std::optional<std::vector<Header>>& headers,
                         const std::optional<std::vector<Row>>& rows) {
  DayTable days;
  if (!headers || !rows) return days;
  const auto columns = columnIndex(*headers);
  for (const auto& row : *rows) {
    const auto dayKey = cellText(row, columns, "DATE");
    if (!dayKey) continue;
    DayMetrics day;
    for (const auto& [name, field, scale] : metricColumns)
      day.*field = numberOrZero(cellText(row, columns, name)) * scale;
    days[*dayKey] = day;
  }
  return days;
}

std::string reportCurrency(const std::optional<std::vector<Header>>& headers) {
  if (headers) {
    for (const auto& header : *headers) {
      if (header.currencyCode) return *header.currencyCode;
    }
  }
  return "EUR";
}

std::vector<QueryItem> monthLastYearItems(platform::Instant anchor) {
  const auto day = reportCalendar.components(anchor);
  if (!day.year || !day.month || !day.day) return {};
  const auto year = std::to_string(*day.year - 1);
  const auto month = std::to_string(*day.month);
  const auto monthLength = reportCalendar.daysInMonth(*day.year - 1, *day.month);
  const auto lastDay = std::min(*day.day, monthLength.value_or(*day.day));
  return {{"dateRange", "CUSTOM"},  {"metrics", "ESTIMATED_EARNINGS"},
          {"startDate.year", year}, {"startDate.month", month},
          {"startDate.day", "1"},   {"endDate.year", year},
          {"endDate.month", month}, {"endDate.day", std::to_string(lastDay)}};
}

double reportTotal(const ReportResponse& report) {
  if (report.totals && !report.totals->cells.empty()) {
    const auto& total = report.totals->cells.front().value;
    const auto number = total ? platform::numberFromText(*total) : std::nullopt;
    if (number) return *number;
  }
  double sum = 0;
  if (report.rows) {
    for (const auto& row : *report.rows) {
      if (!row.cells.empty()) sum += numberOrZero(row.cells.back().value);
    }
  }
  return sum;
}

double fetchMonthLastYear(const AdSenseClient& client, const std::string& accountName,
                          platform::Instant anchor) {
  const auto items = monthLastYearItems(anchor);
  return items.empty() ? 0 : reportTotal(client.generateReport(accountName, items));
}

}  // namespace velmora
