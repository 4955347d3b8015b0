#include <nlohmann/json.hpp>

#include "VelmoraWidget/CurrencyFormat.hpp"
#include "companion/news/kinds/kinds.hpp"
#include "platform/foundation/json.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::news {

using platform::localizedFormat;
using platform::localizedString;

namespace {

constexpr const char* daily = "dailyGoal";
constexpr const char* monthly = "monthlyGoal";
constexpr std::size_t yearAndMonth = 7;  // of "2026-11-23"

std::string periodOf(const std::string& kind, const Facts& facts) {
  const auto day = dayText(facts.now);
  return kind + "-" + (kind == daily ? day : day.substr(0, yearAndMonth)) + "-";
}

/// An entry once as much was earned as the goal says.
std::vector<Entry> findReached(const std::string& kind, const Facts& facts, double earned,
                               double goal, const std::string& title) {
  if (!(goal > 0) || !(earned >= goal)) return {};
  const auto& currency = facts.figures->currency;
  const auto body = localizedFormat(
      "Earned so far: %s. The goal: %s.",
      {velmora::formatCurrency(earned, currency), velmora::formatCurrency(goal, currency)});
  const auto shortest = platform::printJson(platform::jsonNumber(goal));
  return {{periodOf(kind, facts) + shortest, title, body, Urgency::low}};
}

std::vector<Entry> findDaily(const Facts& facts) {
  const auto* figures = figuresOfToday(facts);
  if (figures == nullptr || !facts.goals) return {};
  return findReached(daily, facts, figures->today, facts.goals->daily,
                     localizedString("Today’s goal is reached"));
}

std::vector<Entry> findMonthly(const Facts& facts) {
  const auto* figures = facts.figures ? &*facts.figures : nullptr;
  const bool isThisMonth = dayText(facts.figuresFrom).substr(0, yearAndMonth) ==
                           dayText(facts.now).substr(0, yearAndMonth);
  if (figures == nullptr || !isThisMonth || !facts.goals) return {};
  return findReached(monthly, facts, figures->monthToDate, facts.goals->monthly,
                     localizedString("This month’s goal is reached"));
}

/// Over with the day or month, even if less was earned in the end.
Standing standing(const Told& told, const Facts& facts) {
  return told.id.starts_with(periodOf(told.kind, facts)) ? Standing::holds : Standing::over;
}

}  // namespace

Kind dailyGoalKind() {
  return {daily,
          localizedString("The goal for the day"),
          localizedString("When today’s earnings reach it"),
          findDaily,
          standing,
          true};
}

Kind monthlyGoalKind() {
  return {monthly,
          localizedString("The goal for the month"),
          localizedString("When this month’s earnings reach it"),
          findMonthly,
          standing,
          true};
}

}  // namespace companion::news
