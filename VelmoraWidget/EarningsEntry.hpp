#pragma once

#include "VelmoraWidget/Objectives.hpp"
#include "VelmoraWidget/VelmoraSnapshot.hpp"
#include "platform/foundation/instant.hpp"

namespace velmora {

/// What the widget shows from `date` on.
struct EarningsEntry {
  platform::Instant date;
  VelmoraSnapshot snapshot;
  Objectives objectives;
  bool isConnected = false;  ///< whether a refresh token is stored
};

/// The entry's figures for the host.
platform::Json jsonForm(const EarningsEntry& entry);

}  // namespace velmora
