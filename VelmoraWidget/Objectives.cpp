#include "VelmoraWidget/Objectives.hpp"

#include <nlohmann/json.hpp>

#include "VelmoraWidget/SharedKeychain.hpp"

namespace velmora {

Objectives loadObjectives() {
  try {
    const auto stored = readKeychainData(objectivesAccount, keychainService, keychainAccessGroup);
    if (!stored) return defaultObjectives;
    const platform::JsonDecoder object(*stored);
    const double daily = object.at("daily").number();
    return {daily, object.at("monthly").number()};
  } catch (const KeychainError&) {
    return defaultObjectives;
  } catch (const platform::JsonDecodingError&) {
    return defaultObjectives;
  }
}

platform::Json jsonForm(const Objectives& objectives) {
  return {{"daily", platform::jsonNumber(objectives.daily)},
          {"monthly", platform::jsonNumber(objectives.monthly)}};
}

}  // namespace velmora
