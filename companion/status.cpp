#include "companion/status.hpp"

#include <exception>

#include "VelmoraWidget/AccessToken.hpp"
#include "VelmoraWidget/AccountResolution.hpp"
#include "VelmoraWidget/AdSenseClient.hpp"
#include "VelmoraWidget/SharedKeychain.hpp"
#include "VelmoraWidget/SnapshotCache.hpp"
#include "VelmoraWidget/SnapshotFetch.hpp"
#include "platform/foundation/http.hpp"
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

RefreshFailure::Case caseOf(const velmora::AdSenseError& error) {
  using Case = RefreshFailure::Case;
  const auto* answer = std::get_if<velmora::AdSenseError::Http>(&error.kind);
  if (answer == nullptr) return Case::other;
  switch (answer->statusCode) {
    case 401:
      return Case::signedOut;
    case 403:
      return Case::forbidden;
    case 429:
      return Case::tooMany;
    default:
      return Case::other;
  }
}

}  // namespace

Status currentStatus() {
  return {isSignedIn(), clientInForce(), velmora::loadObjectives(),
          platform::UserDefaults::standard().string(velmora::accountCacheKey),
          velmora::loadCachedSnapshot()};
}

std::optional<RefreshFailure> refreshFigures() {
  using Case = RefreshFailure::Case;
  try {
    velmora::fetchSnapshot();
    return std::nullopt;
  } catch (const velmora::OAuthError& error) {
    return RefreshFailure{Case::signedOut, error.what()};
  } catch (const velmora::AdSenseError& error) {
    return RefreshFailure{caseOf(error), error.what()};
  } catch (const platform::TransportError& error) {
    return RefreshFailure{Case::unreachable, error.what()};
  } catch (const std::exception& error) {
    return RefreshFailure{Case::other, error.what()};
  }
}

}  // namespace companion
