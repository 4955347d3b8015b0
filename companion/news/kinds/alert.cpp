#include <algorithm>

#include "companion/news/kinds/kinds.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::news {

using platform::localizedString;

namespace {

constexpr const char* kind = "alert";

std::string idOf(const ServiceAlert& alert) { return "alert-" + alert.name; }

std::vector<Entry> find(const Facts& facts) {
  std::vector<Entry> entries;
  for (const auto& alert : facts.alerts.value_or(std::vector<ServiceAlert>{})) {
    if (alert.severity == "SEVERE")
      entries.push_back(
          {idOf(alert), localizedString("Urgent, from AdSense"), alert.message, Urgency::critical});
    if (alert.severity == "WARNING")
      entries.push_back(
          {idOf(alert), localizedString("A message from AdSense"), alert.message, Urgency::normal});
  }
  return entries;
}

Standing standing(const Told& told, const Facts& facts) {
  if (!facts.alerts) return Standing::holds;
  const bool isListed =
      std::any_of(facts.alerts->begin(), facts.alerts->end(),
                  [&told](const ServiceAlert& alert) { return idOf(alert) == told.id; });
  return isListed ? Standing::holds : Standing::over;
}

}  // namespace

Kind alertKind() {
  return {kind, localizedString("Messages from AdSense"),
          localizedString("Warnings, such as a payment on hold"), find, standing};
}

}  // namespace companion::news
