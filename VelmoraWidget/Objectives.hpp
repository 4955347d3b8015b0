#pragma once

#include "platform/foundation/json.hpp"

namespace velmora {

/// The user's earnings goals, in the account's currency.
struct Objectives {
  double daily = 10;
  double monthly = 300;

  bool operator==(const Objectives&) const = default;
};

/// Stands in whenever the stored goals cannot be had.
inline constexpr Objectives defaultObjectives{10, 300};

/// The goals as stored, unchecked; the defaults when they are missing or unreadable.
Objectives loadObjectives();

/// `{"daily":10,"monthly":300}`.
platform::Json jsonForm(const Objectives& objectives);

}  // namespace velmora
