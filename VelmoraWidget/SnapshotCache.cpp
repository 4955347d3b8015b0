#include "VelmoraWidget/SnapshotCache.hpp"

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

void saveCachedSnapshot(const VelmoraSnapshot& snapshot) {
  try {
    UserDefaults::standard().setData(snapshotCacheKey, encodeSnapshot(snapshot));
  } catch (const platform::JsonEncodingError&) {
    UserDefaults::standard().remove(snapshotCacheKey);
  }
}

}  // namespace velmora
