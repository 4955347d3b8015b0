#pragma once

#include <vector>

#include "platform/widgets/widget_configuration.hpp"

namespace velmora {

/// The earnings widget's declaration.
struct EarningsWidget {
  [[nodiscard]] platform::WidgetConfiguration body() const;
};

/// All widgets of this program.
struct VelmoraWidgetBundle {
  [[nodiscard]] std::vector<EarningsWidget> body() const { return {EarningsWidget{}}; }
};

}  // namespace velmora
