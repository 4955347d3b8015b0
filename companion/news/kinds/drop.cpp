#include "VelmoraWidget/CurrencyFormat.hpp"
#include "VelmoraWidget/Reports.hpp"
#include "companion/news/kinds/kinds.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::news {

using platform::localizedFormat;
using platform::localizedString;

namespace {

constexpr const char* kind = "drop";
constexpr double largestShare = 0.6;        // of the same weekday before
constexpr double fewestImpressions = 1000;  // then, for the comparison to mean something

std::string idOf(const Facts& facts) {
  return "drop-" + dayText(velmora::reportCalendar.addingDays(facts.now, -1));
}

std::vector<Entry> find(const Facts& facts) {
  const auto* figures = figuresOfToday(facts);
  if (figures == nullptr) return {};
  const bool compares =
      figures->perfPrevWeek.impressions >= fewestImpressions && figures->yesterdayPrevWeek > 0;
  if (!compares || !(figures->yesterday <= largestShare * figures->yesterdayPrevWeek)) return {};
  const auto amount = [&](double value) {
    return velmora::formatCurrency(value, figures->currency);
  };
  return {{idOf(facts), localizedString("Yesterday’s earnings dropped"),
           localizedFormat("Yesterday: %s. The same weekday before: %s.",
                           {amount(figures->yesterday), amount(figures->yesterdayPrevWeek)}),
           Urgency::normal}};
}

Standing standing(const Told& told, const Facts& facts) {
  return told.id == idOf(facts) ? Standing::holds : Standing::over;
}

}  // namespace

Kind dropKind() {
  return {kind,
          localizedString("A drop in earnings"),
          localizedString("When a day brings at most 60 percent of the same weekday before"),
          find,
          standing,
          true};
}

}  // namespace companion::news
