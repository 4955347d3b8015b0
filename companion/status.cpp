#include "companion/status.hpp"

#include <exception>

#include "VelmoraWidget/AccountResolution.hpp"
#include "VelmoraWidget/SharedKeychain.hpp"
#include "VelmoraWidget/SnapshotCache.hpp"
#include "VelmoraWidget/SnapshotFetch.hpp"
#include "platform/foundation/user_defaults.hpp"

namespace companion {

namespace {

bool isSignedIn() {
  try {
    return velmora::refreshTokenItem().readString().has_value();
  } catch (const velmora::KeychainError&) {
    return false;
  }
}

}  // namespace

Status currentStatus() {
  return {isSignedIn(), clientInForce(), velmora::loadObjectives(),
          platform::UserDefaults::standard().string(velmora::accountCacheKey),
          velmora::loadCachedSnapshot()};
}

std::optional<Failure> refreshFigures() {
  try {
    velmora::fetchSnapshot();
    return std::nullopt;
  } catch (const std::exception& error) {
    return describeFailure(error);
  }
}

}  // namespace companion
