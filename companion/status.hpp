#pragma once

#include <optional>
#include <string>

#include "VelmoraWidget/Objectives.hpp"
#include "VelmoraWidget/VelmoraSnapshot.hpp"
#include "companion/client_file.hpp"
#include "companion/failure.hpp"

namespace companion {

/// Everything that is at hand, without the network.
struct Status {
  bool isSignedIn = false;
  std::optional<ClientInForce> client;
  velmora::Objectives goals;
  std::optional<std::string> account;  ///< the AdSense account's resource name, once it is known
  std::optional<velmora::VelmoraSnapshot> snapshot;
};

Status currentStatus();

/// Fetches everything anew, as the widget does, and keeps it for the widget. Returns the first
/// failure that it met, nothing when all went well.
std::optional<Failure> refreshFigures();

}  // namespace companion
