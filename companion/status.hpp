#pragma once

#include <optional>
#include <string>

#include "VelmoraWidget/Objectives.hpp"
#include "VelmoraWidget/VelmoraSnapshot.hpp"
#include "companion/client_file.hpp"

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

/// The first error that a refresh met.
struct RefreshFailure {
  enum class Case {
    signedOut,    ///< the provider does not take the sign-in any more
    unreachable,  ///< no answer came
    forbidden,    ///< the provider does not let this client or user read
    tooMany,      ///< too many requests for now
    other
  };

  Case kind = Case::other;
  std::string description;  ///< in the user's language
};

/// Fetches everything anew, as the widget does, and keeps it for the widget. Returns nothing when
/// all went well.
std::optional<RefreshFailure> refreshFigures();

}  // namespace companion
