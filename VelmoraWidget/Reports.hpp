#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "VelmoraWidget/AdSenseClient.hpp"
#include "VelmoraWidget/PerformanceMetrics.hpp"
#include "platform/foundation/calendar.hpp"
#include "platform/foundation/formatting.hpp"

namespace velmora {

/// All days of the reports are days of this calendar, whatever the user's time zone.
inline constexpr platform::UtcCalendar reportCalendar{};

/// Metrics by day key ("2026-05-21"); the order of keys is the order of days.
using DayTable = std::map<std::string, DayMetrics>;

/// Writes and reads day keys.
platform::DayFormatter makeDayFormatter();

/// PREFIX.year, PREFIX.month and PREFIX.day of a date.
std::vector<platform::QueryItem> dateQueryItems(const std::string& prefix, platform::Instant date);

/// The daily report of the seven metrics, both dates included.
std::vector<platform::QueryItem> dailyReportItems(platform::Instant first, platform::Instant last);

/// The daily report's rows by day. Columns are found by their header's name; what is missing or
/// no number counts as 0.
DayTable parseReportRows(const std::optional<std::vector<Header>>& headers,
                         const std::optional<std::vector<Row>>& rows);

/// The currency of the first header that has one, else "EUR".
std::string reportCurrency(const std::optional<std::vector<Header>>& headers);

/// The items of the report of a month's earnings one year before the anchor day, from the first
/// of the month to the anchor's day of the month; empty for an anchor outside the calendar.
std::vector<platform::QueryItem> monthLastYearItems(platform::Instant anchor);

/// Requests that report and reduces it to one amount. Throws as AdSenseClient does.
double fetchMonthLastYear(const AdSenseClient& client, const std::string& accountName,
                          platform::Instant anchor);

/// The first total when it is a number, else the sum of the rows' last cells.
double reportTotal(const ReportResponse& report);

}  // namespace velmora
