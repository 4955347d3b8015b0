#include "sandbox/reports.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <map>
#include <numeric>

#include "sandbox/api_error.hpp"

namespace sandbox {

namespace chr = std::chrono;
using platform::Json;

namespace {

double ratio(double numerator, double denominator) {
  return denominator == 0 ? 0 : numerator / denominator;
}

struct Metric {
  const char* name;
  const char* type;
  double (*value)(const DayFigures&);
};

constexpr Metric metrics[] = {
    {"ESTIMATED_EARNINGS", "METRIC_CURRENCY", [](const DayFigures& f) { return f.earnings; }},
    {"TOTAL_EARNINGS", "METRIC_CURRENCY", [](const DayFigures& f) { return f.earnings; }},
    {"PAGE_VIEWS", "METRIC_TALLY", [](const DayFigures& f) { return double(f.pageViews); }},
    {"AD_REQUESTS", "METRIC_TALLY", [](const DayFigures& f) { return double(f.adRequests); }},
    {"MATCHED_AD_REQUESTS", "METRIC_TALLY",
     [](const DayFigures& f) { return double(f.matchedAdRequests); }},
    {"IMPRESSIONS", "METRIC_TALLY", [](const DayFigures& f) { return double(f.impressions); }},
    {"CLICKS", "METRIC_TALLY", [](const DayFigures& f) { return double(f.clicks); }},
    {"PAGE_VIEWS_RPM", "METRIC_CURRENCY",
     [](const DayFigures& f) { return ratio(f.earnings * 1000, double(f.pageViews)); }},
    {"IMPRESSIONS_RPM", "METRIC_CURRENCY",
     [](const DayFigures& f) { return ratio(f.earnings * 1000, double(f.impressions)); }},
    {"COST_PER_CLICK", "METRIC_CURRENCY",
     [](const DayFigures& f) { return ratio(f.earnings, double(f.clicks)); }},
    {"PAGE_VIEWS_CTR", "METRIC_RATIO",
     [](const DayFigures& f) { return ratio(double(f.clicks), double(f.pageViews)); }},
    {"IMPRESSIONS_CTR", "METRIC_RATIO",
     [](const DayFigures& f) { return ratio(double(f.clicks), double(f.impressions)); }},
    {"AD_REQUESTS_COVERAGE", "METRIC_RATIO",
     [](const DayFigures& f) { return ratio(double(f.matchedAdRequests), double(f.adRequests)); }}};

/// What a report was asked for.
struct ReportRequest {
  std::vector<std::string> dimensions;
  std::vector<Metric> metrics;
  std::vector<std::string> orderBy;
  chr::sys_days first;
  chr::sys_days last;
  std::size_t limit = 100'000;
};

std::vector<std::string> values(const Query& query, const std::string& name) {
  std::vector<std::string> found;
  for (const auto& [key, value] : query) {
    if (key == name) found.push_back(value);
  }
  return found;
}

std::string lastValue(const Query& query, const std::string& name) {
  const auto found = values(query, name);
  return found.empty() ? "" : found.back();
}

unsigned long number(const Query& query, const std::string& name) {
  const auto text = lastValue(query, name);
  const bool digits =
      !text.empty() && text.size() < 9 && text.find_first_not_of("0123456789") == std::string::npos;
  if (!digits) throw ApiError(400, "Invalid value at '" + name + "'.");
  return std::stoul(text);
}

chr::sys_days customDate(const Query& query, const std::string& prefix) {
  const chr::year_month_day date{
      chr::year{static_cast<int>(number(query, prefix + ".year"))},
      chr::month{static_cast<unsigned>(number(query, prefix + ".month"))},
      chr::day{static_cast<unsigned>(number(query, prefix + ".day"))}};
  if (!date.ok()) throw ApiError(400, "Invalid date at '" + prefix + "'.");
  return date;
}

void setDateRange(ReportRequest& request, const Query& query, chr::sys_days today) {
  const chr::year_month_day date{today};
  const auto range = lastValue(query, "dateRange");
  request.last = today;
  if (range.empty() || range == "CUSTOM") {
    request.first = customDate(query, "startDate");
    request.last = customDate(query, "endDate");
  } else if (range == "TODAY") {
    request.first = today;
  } else if (range == "YESTERDAY") {
    request.first = request.last = today - chr::days{1};
  } else if (range == "LAST_7_DAYS" || range == "LAST_30_DAYS") {
    request.last = today - chr::days{1};
    request.first = today - chr::days{range == "LAST_7_DAYS" ? 7 : 30};
  } else if (range == "MONTH_TO_DATE") {
    request.first = date.year() / date.month() / 1;
  } else if (range == "YEAR_TO_DATE") {
    request.first = date.year() / 1 / 1;
  } else {
    throw ApiError(400, "Invalid value at 'date_range': \"" + range + "\".");
  }
  if (request.first > request.last)
    throw ApiError(400, "The start date must not be after the end date.");
}

ReportRequest readRequest(const Query& query, chr::sys_days today) {
  ReportRequest request;
  request.dimensions = values(query, "dimensions");
  request.orderBy = values(query, "orderBy");
  for (const auto& dimension : request.dimensions) {
    if (dimension != "DATE" && dimension != "MONTH")
      throw ApiError(400, "Invalid value at 'dimensions': \"" + dimension + "\".");
  }
  for (const auto& name : values(query, "metrics")) {
    const auto* metric = std::find_if(std::begin(metrics), std::end(metrics),
                                      [&](const Metric& known) { return known.name == name; });
    if (metric == std::end(metrics))
      throw ApiError(400, "Invalid value at 'metrics': \"" + name + "\".");
    request.metrics.push_back(*metric);
  }
  if (request.metrics.empty()) throw ApiError(400, "At least one metric is required.");
  if (!lastValue(query, "limit").empty()) request.limit = number(query, "limit");
  setDateRange(request, query, today);
  return request;
}

std::string isoDate(chr::sys_days day) {
  const chr::year_month_day date{day};
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
  return text;
}

Json dateJson(chr::sys_days day) {
  const chr::year_month_day date{day};
  return {{"year", static_cast<int>(date.year())},
          {"month", static_cast<unsigned>(date.month())},
          {"day", static_cast<unsigned>(date.day())}};
}

/// The texts of the dimensions of a day; equal ones share a row.
std::vector<std::string> rowKey(const ReportRequest& request, chr::sys_days day) {
  std::vector<std::string> key;
  for (const auto& dimension : request.dimensions)
    key.push_back(isoDate(day).substr(0, dimension == "MONTH" ? 7 : 10));
  return key;
}

struct ReportRow {
  std::vector<std::string> key;
  DayFigures figures;
};

std::vector<ReportRow> collectRows(const Publisher& publisher, const ReportRequest& request) {
  std::map<std::vector<std::string>, DayFigures> byKey;
  if (request.dimensions.empty()) byKey[{}] = {};
  const auto last = std::min(request.last, publisher.today());
  const auto first = std::max(request.first, last - chr::days{366 * 5});
  for (auto day = first; day <= last; day += chr::days{1}) {
    if (const auto figures = publisher.day(day)) byKey[rowKey(request, day)] += *figures;
  }
  std::vector<ReportRow> rows;
  for (const auto& [key, figures] : byKey) rows.push_back({key, figures});
  return rows;
}

/// Sorts by "+NAME" or "-NAME", the first item weighing most. A plus that was not escaped arrives
/// as a space.
void sortRows(std::vector<ReportRow>& rows, const ReportRequest& request) {
  for (auto order = request.orderBy.rbegin(); order != request.orderBy.rend(); ++order) {
    const bool descending = order->starts_with('-');
    const auto name = order->substr(order->find_first_not_of("+- ") == 1 ? 1 : 0);
    const auto dimension = std::find(request.dimensions.begin(), request.dimensions.end(), name);
    const auto metric = std::find_if(request.metrics.begin(), request.metrics.end(),
                                     [&](const Metric& known) { return known.name == name; });
    const auto index = static_cast<std::size_t>(dimension - request.dimensions.begin());
    if (dimension == request.dimensions.end() && metric == request.metrics.end())
      throw ApiError(400, "Invalid value at 'order_by': \"" + *order + "\".");
    std::stable_sort(rows.begin(), rows.end(), [&](const ReportRow& a, const ReportRow& b) {
      const auto& low = descending ? b : a;
      const auto& high = descending ? a : b;
      if (dimension != request.dimensions.end()) return low.key[index] < high.key[index];
      return metric->value(low.figures) < metric->value(high.figures);
    });
  }
}

std::string cellText(const Metric& metric, const DayFigures& figures, double divisor,
                     int moneyDigits) {
  const std::string type = metric.type;
  const int digits = type == "METRIC_RATIO" ? 4 : type == "METRIC_CURRENCY" ? moneyDigits : 0;
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", digits, metric.value(figures) / divisor);
  return text;
}

/// A row as wide as the headers; `key` is empty for totals and averages, whose dimension cells
/// are empty.
Json cells(const ReportRequest& request, const std::vector<std::string>& key,
           const DayFigures& figures, int moneyDigits, double divisor = 1) {
  Json list = Json::array();
  for (std::size_t i = 0; i < request.dimensions.size(); ++i)
    list.push_back(key.empty() ? Json::object() : Json{{"value", key[i]}});
  for (const auto& metric : request.metrics) {
    const bool tallied = std::string(metric.type) == "METRIC_TALLY" ||
                         std::string(metric.name).ends_with("EARNINGS");
    list.push_back({{"value", cellText(metric, figures, tallied ? divisor : 1, moneyDigits)}});
  }
  return {{"cells", list}};
}

Json headers(const ReportRequest& request, const std::string& currency) {
  Json list = Json::array();
  for (const auto& dimension : request.dimensions)
    list.push_back({{"name", dimension}, {"type", "DIMENSION"}});
  for (const auto& metric : request.metrics) {
    Json header{{"name", metric.name}, {"type", metric.type}};
    if (std::string(metric.type) == "METRIC_CURRENCY") header["currencyCode"] = currency;
    list.push_back(header);
  }
  return list;
}

}  // namespace

Json generateReport(const Publisher& publisher, const Query& query) {
  const auto request = readRequest(query, publisher.today());
  auto rows = collectRows(publisher, request);
  sortRows(rows, request);

  DayFigures total;
  for (const auto& row : rows) total += row.figures;
  const int digits = publisher.fractionDigits();
  Json rowList = Json::array();
  for (const auto& row : rows) {
    if (rowList.size() == request.limit) break;
    rowList.push_back(cells(request, row.key, row.figures, digits));
  }
  Json report{{"totalMatchedRows", std::to_string(rows.size())},
              {"headers", headers(request, publisher.currency())}};
  if (!rowList.empty()) report["rows"] = rowList;
  const double rowCount = std::max<double>(1, static_cast<double>(rows.size()));
  report["totals"] = cells(request, {}, total, digits);
  report["averages"] = cells(request, {}, total, digits, rowCount);
  report["startDate"] = dateJson(request.first);
  report["endDate"] = dateJson(request.last);
  return report;
}

}  // namespace sandbox
