#include "platform/widgets/widget_family.hpp"

namespace platform {

namespace {

struct NamedFamily {
  WidgetFamily family;
  std::string_view name;
  std::string_view shortName;
  Size size;
};

constexpr NamedFamily families[] = {
    {WidgetFamily::systemSmall, "systemSmall", "small", {170, 170}},
    {WidgetFamily::systemMedium, "systemMedium", "medium", {364, 170}},
    {WidgetFamily::systemLarge, "systemLarge", "large", {364, 382}},
    {WidgetFamily::systemExtraLarge, "systemExtraLarge", "extralarge", {756, 382}}};

}  // namespace

std::string familyName(WidgetFamily family) {
  for (const auto& named : families) {
    if (named.family == family) return std::string(named.name);
  }
  return "";
}

std::string familyShortName(WidgetFamily family) {
  for (const auto& named : families) {
    if (named.family == family) return std::string(named.shortName);
  }
  return "";
}

std::optional<WidgetFamily> familyFromName(std::string_view name) {
  for (const auto& named : families) {
    if (named.name == name || named.shortName == name) return named.family;
  }
  return std::nullopt;
}

Size familySize(WidgetFamily family) {
  for (const auto& named : families) {
    if (named.family == family) return named.size;
  }
  return {};
}

}  // namespace platform
