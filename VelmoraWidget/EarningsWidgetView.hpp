#pragma once

#include <optional>

#include "VelmoraWidget/EarningsEntry.hpp"
#include "platform/views/views.hpp"
#include "platform/widgets/widget_family.hpp"

namespace velmora {

/// The root of every entry: the layout of the widget's family, or a prompt for the signed out.
struct EarningsWidgetView {
  EarningsEntry entry;
  std::optional<platform::WidgetFamily> familyOverride;  ///< instead of the environment's family

  [[nodiscard]] platform::View body(const platform::ViewEnvironment& environment) const;
};

/// Asks the user to sign in.
struct DisconnectedWidget {
  [[nodiscard]] platform::View body() const;
};

/// Two rings with their amounts.
struct SmallWidget {
  EarningsEntry entry;

  [[nodiscard]] platform::View body() const;
};

/// Two rings, today's earnings and the balance.
struct MediumWidget {
  EarningsEntry entry;

  [[nodiscard]] platform::View body() const;
};

/// Two rings, four figures, and yesterday's six performance metrics.
struct LargeWidget {
  EarningsEntry entry;

  [[nodiscard]] platform::View body() const;
};

}  // namespace velmora
