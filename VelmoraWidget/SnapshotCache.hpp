#pragma once

#include <optional>

#include "VelmoraWidget/VelmoraSnapshot.hpp"

namespace velmora {

/// The user-defaults key that holds the newest snapshot, as data in its JSON form.
inline constexpr const char* snapshotCacheKey = "earnings.snapshot";

/// The stored snapshot; absent when there is none or it cannot be read, in which case it stays.
std::optional<VelmoraSnapshot> loadCachedSnapshot();

/// Stores a snapshot in place of the previous one. A snapshot that JSON cannot hold removes it.
void saveCachedSnapshot(const VelmoraSnapshot& snapshot);

}  // namespace velmora
