#pragma once

#include <functional>
#include <optional>

#include "VelmoraWidget/VelmoraSnapshot.hpp"

namespace velmora {

/// The user-defaults key that holds the newest snapshot, as data in its JSON form.
inline constexpr const char* snapshotCacheKey = "earnings.snapshot";

/// The stored snapshot; absent when there is none or it cannot be read, in which case it stays.
std::optional<VelmoraSnapshot> loadCachedSnapshot();

/// Stores a snapshot in place of the previous one, unless `check`, made when nobody else can write,
/// throws. A snapshot that JSON cannot hold removes the previous one.
void saveCachedSnapshot(
    const VelmoraSnapshot& snapshot, const std::function<void()>& check = [] {});

}  // namespace velmora
