#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "VelmoraWidget/PerformanceMetrics.hpp"
#include "platform/foundation/instant.hpp"
#include "platform/foundation/json.hpp"

namespace companion {

/// A day as the service counts it, in the account's time zone.
using Day = std::chrono::sys_days;

/// How far back the days can be asked for.
inline constexpr int mostDays = 730;

/// One day and what it brought; nothing but zeros when the service did not list it.
struct HistoryDay {
  Day date;
  velmora::DayMetrics figures;

  bool operator==(const HistoryDay&) const = default;
};

/// The days of one account, as one report told them.
struct History {
  std::string account;   ///< its resource name, "accounts/pub-..."
  std::string currency;  ///< ISO 4217 code
  platform::Instant updatedAt;
  std::vector<HistoryDay> days;  ///< oldest first, none left out

  bool operator==(const History&) const = default;
};

/// The UTC day of an instant; 1970-01-01 for one outside the calendar.
Day dayOf(platform::Instant instant);

/// Midnight UTC of a day, to make texts of.
platform::Instant instantOf(Day day);

/// "2026-11-23", as reports and files write it.
std::string dayText(Day day);

/// Reads such a text; absent for any other, and for a day that no calendar has.
std::optional<Day> dayFromText(const std::string& text);

/// Whether every day of the last `count` up to `last` is there.
bool covers(const History& history, int count, Day last);

/// The same with at most the last `count` days, none after `last`.
History lastDays(History history, int count, Day last);

/// What `velmora history` prints.
platform::Json jsonForm(const History& history);

/// A day's figures by their names there; shared by everything that writes days or reads them.
struct DayField {
  const char* key;
  const char* column;  ///< in files of comma-separated values
  double velmora::DayMetrics::* field;
};
inline constexpr DayField dayFields[] = {
    {"earnings", "earnings", &velmora::DayMetrics::earnings},
    {"pageViews", "page_views", &velmora::DayMetrics::pageViews},
    {"impressions", "impressions", &velmora::DayMetrics::impressions},
    {"clicks", "clicks", &velmora::DayMetrics::clicks},
    {"rpm", "rpm", &velmora::DayMetrics::rpm},
    {"cpc", "cpc", &velmora::DayMetrics::cpc},
    {"ctr", "ctr", &velmora::DayMetrics::ctr}};

}  // namespace companion
