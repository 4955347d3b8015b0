#include "VelmoraWidget/SharedKeychain.hpp"

#include "platform/foundation/text.hpp"
#include "platform/keychain/keychain.hpp"

namespace velmora {

KeychainError::KeychainError(std::int32_t statusCode)
    : status(statusCode), description_("Erreur Keychain (" + std::to_string(statusCode) + ")") {}

std::optional<std::string> readKeychainData(const std::string& account, const std::string& service,
                                            const std::string& accessGroup) {
  auto found = platform::lookUpGenericPassword(service, account, accessGroup);
  if (found.status == platform::keychain_status::itemNotFound) return std::nullopt;
  if (found.status != platform::keychain_status::success || !found.data)
    throw KeychainError(found.status);
  return std::move(found.data);
}

std::optional<std::string> KeychainItem::readString() const {
  const auto data = readKeychainData(account, service, accessGroup);
  if (!data) return std::nullopt;
  return platform::repairedUtf8(*data);
}

KeychainItem refreshTokenItem() {
  return {keychainService, keychainAccessGroup, refreshTokenAccount};
}

}  // namespace velmora
