#include "platform/widgets/widget_family.hpp"

namespace platform {

namespace {

struct NamedFamily {
  WidgetFamily family;
  std::string_view name;
  std::string_view shortName;
};

constexpr NamedFamily families[] = {
    {WidgetFamily::systemSmall, "systemSmall", "small"},
    {WidgetFamily::systemMedium, "systemMedium", "medium"},
    {WidgetFamily::systemLarge, "systemLarge", "large"},
    {WidgetFamily::systemExtraLarge, "systemExtraLarge", "extralarge"}};

}  // namespace

std::string familyName(WidgetFamily family) {
  for (const auto& named : families) {
    if (named.family == family) return std::string(named.name);
  }
  return "";
}

std::optional<WidgetFamily> familyFromName(std::string_view name) {
  for (const auto& named : families) {
    if (named.name == name || named.shortName == name) return named.family;
  }
  return std::nullopt;
}

}  // namespace platform
