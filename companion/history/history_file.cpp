#include "companion/history/history_file.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>

#include "VelmoraWidget/CurrencyFormat.hpp"
#include "companion/history/chart.hpp"
#include "companion/history/csv.hpp"
#include "platform/foundation/formatting.hpp"
#include "platform/views/painter.hpp"

namespace companion {

namespace {

namespace chr = std::chrono;

/// The months that the last days reach into.
int monthsOf(const History& history, int days) {
  const chr::year_month_day last{history.days.back().date};
  const chr::year_month_day first{history.days.back().date - chr::days{days - 1}};
  const auto months = last.year() / last.month() - first.year() / first.month();
  return static_cast<int>(months.count()) + 1;
}

ChartPeriod periodOf(const History& history, int days) {
  if (days <= fiveWeeks.count) return {ChartPeriod::Unit::day, days};
  return {ChartPeriod::Unit::month, std::min(monthsOf(history, days), thirteenMonths.count)};
}

platform::DrawList drawn(const History& history, int days, double scale) {
  const auto model = chartModel(history, velmora::loadObjectives(), periodOf(history, days));
  const auto typesetter = platform::systemTypesetter();
  ChartStyle style{.scale = scale,
                   .rightToLeft = platform::isRightToLeft(velmora::displayLocale())};
  style.height = std::ceil(idealChartHeight(model, style, *typesetter));
  return layOutChart(model, style, *typesetter);
}

}  // namespace

std::optional<HistoryFile> historyFile(const std::string& fileName) {
  static const std::map<std::string, HistoryFile> kinds{{".csv", HistoryFile::csv},
                                                        {".json", HistoryFile::json},
                                                        {".png", HistoryFile::png},
                                                        {".svg", HistoryFile::svg},
                                                        {".pdf", HistoryFile::pdf}};
  const auto kind = kinds.find(std::filesystem::path(fileName).extension());
  return kind == kinds.end() ? std::nullopt : std::optional(kind->second);
}

bool isPicture(HistoryFile kind) { return kind != HistoryFile::csv && kind != HistoryFile::json; }

std::string historyBytes(const History& history, int days, HistoryFile kind, double scale) {
  switch (kind) {
    case HistoryFile::csv:
      return csvForm(lastDays(history, days, history.days.back().date));
    case HistoryFile::json:
      return platform::printJson(jsonForm(lastDays(history, days, history.days.back().date))) +
             "\n";
    case HistoryFile::svg:
      return platform::paintSvg(drawn(history, days, scale));
    case HistoryFile::pdf:
      return platform::paintPdf(drawn(history, days, scale));
    case HistoryFile::png:
      break;
  }
  return platform::paintPng(drawn(history, days, scale));
}

}  // namespace companion
