#include "companion/user_data.hpp"

#include <nlohmann/json.hpp>

#include "VelmoraWidget/AccountResolution.hpp"
#include "VelmoraWidget/SharedKeychain.hpp"
#include "VelmoraWidget/SnapshotCache.hpp"
#include "companion/sign_in_error.hpp"
#include "companion/token_exchange.hpp"
#include "platform/foundation/bundle.hpp"
#include "platform/foundation/json.hpp"
#include "platform/foundation/user_defaults.hpp"
#include "platform/keychain/keychain.hpp"

namespace companion {

namespace {

namespace status = platform::keychain_status;

platform::KeychainKey keyOf(const char* account) {
  return {velmora::keychainService, account, velmora::keychainAccessGroup};
}

[[noreturn]] void fail(std::int32_t code) {
  using Case = SignInError::Case;
  if (code == status::interactionNotAllowed) throw SignInError(Case::keyringLocked);
  if (code == status::notAvailable || code == status::noDefaultKeychain)
    throw SignInError(Case::keyringMissing);
  throw SignInError(Case::keyringFailed, std::to_string(code));
}

void store(const char* account, const char* label, const std::string& data) {
  const auto code = platform::storeGenericPassword(keyOf(account), label, data);
  if (code != status::success) fail(code);
}

/// The item's bytes; absent when there is none. Throws SignInError.
std::optional<std::string> read(const char* account) {
  try {
    return velmora::readKeychainData(account, velmora::keychainService,
                                     velmora::keychainAccessGroup);
  } catch (const velmora::KeychainError& error) {
    fail(error.status);
  }
}

[[noreturn]] void failToForget() {
  const auto folder = platform::stateFolder();
  throw SignInError(SignInError::Case::stateNotWritable, folder ? folder->string() : "~");
}

}  // namespace

void requireKeyring() {
  const auto code = platform::keychainReadiness();
  if (code != status::success) fail(code);
}

void storeRefreshToken(const std::string& token) {
  store(velmora::refreshTokenAccount, "Velmora", token);
}

velmora::Objectives storedGoals() {
  read(velmora::objectivesAccount);
  return velmora::loadObjectives();
}

void storeGoals(const velmora::Objectives& goals) {
  store(velmora::objectivesAccount, "Velmora goals",
        platform::encodeJson(velmora::jsonForm(goals)));
}

void requireState() {
  constexpr const char* probe = "companion.probe";
  const auto defaults = platform::UserDefaults::standard();
  defaults.setString(probe, probe);
  const bool stored = defaults.string(probe).has_value();
  defaults.remove(probe);
  if (!stored) failToForget();
}

void forgetFigures() {
  const auto defaults = platform::UserDefaults::standard();
  defaults.remove(velmora::accountCacheKey);
  defaults.remove(velmora::snapshotCacheKey);
  if (defaults.string(velmora::accountCacheKey) || defaults.data(velmora::snapshotCacheKey))
    failToForget();
}

std::optional<bool> isStoredToken(const std::string& token) {
  try {
    return read(velmora::refreshTokenAccount) == token;
  } catch (const SignInError&) {
    return std::nullopt;
  }
}

bool signOut() {
  const auto token = read(velmora::refreshTokenAccount);
  requireState();
  const auto code = platform::removeGenericPassword(keyOf(velmora::refreshTokenAccount));
  if (code != status::success && code != status::itemNotFound) fail(code);
  forgetFigures();
  const bool isWithdrawn = !token || revokeToken(*token);
  // The provider may have answered a refresh that was under way until now.
  forgetFigures();
  return isWithdrawn;
}

}  // namespace companion
