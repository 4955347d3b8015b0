#include "VelmoraWidget/EarningsWidget.hpp"

#include <nlohmann/json.hpp>

#include "VelmoraWidget/EarningsProvider.hpp"
#include "VelmoraWidget/EarningsWidgetView.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace velmora {

namespace {

constexpr platform::LinearGradient containerBackground{.top = {0.08, 0.16, 0.30, 1},
                                                       .bottom = {0.04, 0.09, 0.16, 1}};

platform::WidgetView content(const EarningsEntry& entry) {
  return {EarningsWidgetView{entry, std::nullopt}, containerBackground};
}

}  // namespace

platform::WidgetConfiguration EarningsWidget::body() const {
  auto configuration =
      platform::staticConfiguration("VelmoraEarnings", EarningsProvider{}, content);
  configuration.displayName = platform::localizedString("AdSense earnings");
  configuration.description =
      platform::localizedString("Your estimated AdSense earnings, updated automatically.");
  configuration.families = {platform::WidgetFamily::systemSmall,
                            platform::WidgetFamily::systemMedium,
                            platform::WidgetFamily::systemLarge};
  return configuration;
}

}  // namespace velmora
