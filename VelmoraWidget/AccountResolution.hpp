#pragma once

#include <functional>
#include <string>

#include "VelmoraWidget/AdSenseClient.hpp"

namespace velmora {

/// The user-defaults key that holds the account's resource name, as a string.
inline constexpr const char* accountCacheKey = "adsense.account";

/// The resource name of the account to report on: the cached one, unchecked, else the first of
/// the API's list, which is then cached for good unless `check`, made when nobody else can write,
/// throws. Throws as AdSenseClient does.
std::string resolveAccountName(
    const AdSenseClient& client, const std::function<void()>& check = [] {});

}  // namespace velmora
