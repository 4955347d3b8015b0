#include "companion/history/history.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>

#include "platform/foundation/calendar.hpp"

namespace companion {

namespace chr = std::chrono;
using platform::Json;

Day dayOf(platform::Instant instant) {
  const auto parts = platform::UtcCalendar{}.components(instant);
  if (!parts.year || !parts.month || !parts.day) return {};
  return chr::year{static_cast<int>(*parts.year)} /
         chr::month{static_cast<unsigned>(*parts.month)} /
         chr::day{static_cast<unsigned>(*parts.day)};
}

platform::Instant instantOf(Day day) {
  return platform::instantFromUnixSeconds(static_cast<double>(day.time_since_epoch().count()) *
                                          platform::secondsPerDay);
}

std::string dayText(Day day) {
  const chr::year_month_day date{day};
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
  return text;
}

std::optional<Day> dayFromText(const std::string& text) {
  int year = 0;
  unsigned month = 0, day = 0;
  if (std::sscanf(text.c_str(), "%4d-%2u-%2u", &year, &month, &day) != 3) return std::nullopt;
  const chr::year_month_day date{chr::year{year}, chr::month{month}, chr::day{day}};
  // Written again it is the same, or it was something else: "2026-1-2", "2026-01-02 ".
  if (!date.ok() || dayText(date) != text) return std::nullopt;
  return date;
}

bool covers(const History& history, int count, Day last) {
  if (history.days.empty()) return false;
  return history.days.front().date <= last - chr::days{count - 1} &&
         history.days.back().date >= last;
}

History lastDays(History history, int count, Day last) {
  auto& days = history.days;
  std::erase_if(days, [last](const HistoryDay& day) { return day.date > last; });
  const auto surplus = static_cast<std::ptrdiff_t>(days.size()) - count;
  if (surplus > 0) days.erase(days.begin(), days.begin() + surplus);
  return history;
}

Json jsonForm(const History& history) {
  Json days = Json::array();
  for (const auto& [date, figures] : history.days) {
    Json day{{"date", dayText(date)}};
    for (const auto& [key, column, field] : dayFields)
      day[key] = platform::jsonNumber(figures.*field);
    days.push_back(std::move(day));
  }
  return {{"account", history.account},
          {"currency", history.currency},
          {"updatedAt", platform::iso8601(history.updatedAt)},
          {"days", std::move(days)}};
}

}  // namespace companion
