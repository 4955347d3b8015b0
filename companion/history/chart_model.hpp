#pragma once

#include <optional>
#include <string>
#include <vector>

#include "VelmoraWidget/Objectives.hpp"
#include "companion/history/history.hpp"

namespace companion {

/// What a bar stands for, and how many bars there are at most.
struct ChartPeriod {
  enum class Unit { day, month };

  Unit unit = Unit::day;
  int count = 1;
};
inline constexpr ChartPeriod fiveWeeks{ChartPeriod::Unit::day, 35};
inline constexpr ChartPeriod thirteenMonths{ChartPeriod::Unit::month, 13};

/// How many days a chart needs to be whole, with the year before behind its bars.
inline constexpr int chartDays = mostDays;

/// One day or month. Amounts are in the account's currency, texts in the user's language.
struct ChartBar {
  Day first;  ///< the day, or the first of the month
  double earnings = 0;
  std::optional<double> yearBefore;  ///< of the same days; absent when not all of them are known
  bool isOver = true;                ///< its figures do not grow any more
  std::string label;                 ///< "21 Nov", "Nov"
  std::string shortLabel;            ///< "21", "N"
  std::string name;                  ///< "Sat 21 Nov", "November 2026"
  std::string title;                 ///< the same, and that it is not over yet
  std::string amount;                ///< "€9.21"
  std::string yearBeforeAmount;      ///< "€8.30"; empty when it is not known
  std::string note;    ///< "of €10 · €8.30 a year before"; empty when there is nothing to say
  std::string phrase;  ///< for people who do not look: "Sat 21 Nov, €9.21 of €10"
};

/// A figure of everything that is seen.
struct ChartFigure {
  std::string title;
  std::string value;
};

/// Everything that a chart shows.
struct ChartModel {
  ChartPeriod period;
  std::string currency;
  std::vector<ChartBar> bars;  ///< oldest first
  std::optional<double> goal;  ///< for one bar
  std::string goalAmount;      ///< "€10"; empty without a goal
  std::string title;           ///< the first and the last day that are seen
  std::string total;           ///< what all bars come to
  std::string mean;            ///< "€8.90 a day on average"; empty while no day is over
  std::vector<ChartFigure> figures;
  std::string caption;  ///< whose days these are
};

/// Makes the chart of the last bars of a period. Days that are not known have no bar.
ChartModel chartModel(const History& history, const velmora::Objectives& goals, ChartPeriod period);

/// An amount in the user's locale, without a fraction where there is none: "€10", "€12.50".
std::string shortAmount(double amount, const std::string& currency);

}  // namespace companion
