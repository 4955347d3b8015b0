#include "VelmoraWidget/EarningsWidget.hpp"

#include <nlohmann/json.hpp>

#include "VelmoraWidget/EarningsProvider.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace velmora {

platform::WidgetConfiguration EarningsWidget::body() const {
  auto configuration = platform::staticConfiguration("VelmoraEarnings", EarningsProvider{});
  configuration.displayName = platform::localizedString("AdSense earnings");
  configuration.description =
      platform::localizedString("Your estimated AdSense earnings, updated automatically.");
  configuration.families = {platform::WidgetFamily::systemSmall,
                            platform::WidgetFamily::systemMedium,
                            platform::WidgetFamily::systemLarge};
  return configuration;
}

}  // namespace velmora
