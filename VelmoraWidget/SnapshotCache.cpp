#include "VelmoraWidget/SnapshotCache.hpp"

#include <tuple>

#include "platform/foundation/user_defaults.hpp"

namespace velmora {

using platform::UserDefaults;

std::optional<VelmoraSnapshot> loadCachedSnapshot() {
  const auto stored = UserDefaults::standard().data(snapshotCacheKey);
  if (!stored) return std::nullopt;
  try {
    return decodeSnapshot(*stored);
  } catch (const platform::JsonDecodingError&) {
    return std::nullopt;
  }
}

void saveCachedSnapshot(const VelmoraSnapshot& snapshot, const std::function<void()>& check) {
  // One that cannot be stored is shown all the same.
  std::ignore = UserDefaults::standard().change([&](auto& changes) {
    check();
    try {
      changes.setData(snapshotCacheKey, encodeSnapshot(snapshot));
    } catch (const platform::JsonEncodingError&) {
      changes.remove(snapshotCacheKey);
    }
  });
}

}  // namespace velmora
