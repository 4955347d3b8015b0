#include "companion/history/chart_table.hpp"

#include "platform/foundation/localized_strings.hpp"

namespace companion {

using platform::localizedString;

namespace {

constexpr const char* unknown = "—";

std::string orUnknown(const std::string& text) { return text.empty() ? unknown : text; }

}  // namespace

ChartTable chartTable(const ChartModel& model) {
  const bool isDaily = model.period.unit == ChartPeriod::Unit::day;
  ChartTable table{{localizedString(isDaily ? "Day" : "Month"), localizedString("Earnings"),
                    localizedString("Goal"), localizedString("A year before")},
                   {}};
  for (auto bar = model.bars.rbegin(); bar != model.bars.rend(); ++bar)
    table.rows.push_back(
        {bar->name, bar->amount, orUnknown(model.goalAmount), orUnknown(bar->yearBeforeAmount)});
  return table;
}

}  // namespace companion
