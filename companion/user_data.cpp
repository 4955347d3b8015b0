#include "companion/user_data.hpp"

#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

#include <array>
#include <cstdlib>

#include "VelmoraWidget/AccountResolution.hpp"
#include "VelmoraWidget/SharedKeychain.hpp"
#include "VelmoraWidget/SnapshotCache.hpp"
#include "companion/account_name.hpp"
#include "companion/former_figures.hpp"
#include "companion/history/store.hpp"
#include "companion/news/memory_file.hpp"
#include "companion/token_exchange.hpp"
#include "platform/foundation/bundle.hpp"
#include "platform/foundation/files.hpp"
#include "platform/foundation/json.hpp"
#include "platform/foundation/raii.hpp"
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

std::string stateFolderName() {
  const auto folder = platform::stateFolder();
  return folder ? folder->string() : "~";
}

/// Whether a file can be made and filled there; it has no name that another program could meet.
bool hasRoom(const std::filesystem::path& folder) {
  if (!platform::makePrivateFolders(folder)) return false;
  auto name = (folder / ".velmora-XXXXXX").string();
  const platform::Descriptor file(::mkostemp(name.data(), O_CLOEXEC));
  if (!file || ::unlink(name.c_str()) != 0) return false;
  constexpr std::array<char, 8192> block{};
  return ::write(file.get(), block.data(), block.size()) == static_cast<ssize_t>(block.size());
}

/// Throws SignInError.
void removeToken() {
  const auto code = platform::removeGenericPassword(keyOf(velmora::refreshTokenAccount));
  if (code != status::success && code != status::itemNotFound) fail(code);
}

/// Returns the failure if the token is still there, for all that is known.
std::optional<SignInError> forgetToken(std::optional<std::string>& token) {
  try {
    token = storedToken();
    removeToken();
    return std::nullopt;
  } catch (const SignInError& error) {
    // Somebody else may have been faster.
    return isStoredToken(std::nullopt) == true ? std::nullopt : std::optional(error);
  }
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
  const auto folder = platform::stateFolder();
  // A change of nothing takes the lock and opens the store for writing, but writes nothing.
  if (!folder || !hasRoom(*folder) || !platform::UserDefaults::standard().change([](auto&) {}))
    failToStore();
}

void failToStore() { throw SignInError(SignInError::Case::stateNotWritable, stateFolderName()); }

std::vector<std::string> figureKeys() {
  return {velmora::accountCacheKey, accountNameKey, velmora::snapshotCacheKey};
}

void forgetFigures() {
  auto keys = figureKeys();
  for (const auto& key : asideKeys()) keys.push_back(key);
  const bool daysAreForgotten = forgetHistory();
  if (!platform::UserDefaults::standard().forget(keys) || !daysAreForgotten)
    throw SignInError(SignInError::Case::figuresLeft, stateFolderName());
}

std::optional<std::string> storedToken() { return read(velmora::refreshTokenAccount); }

std::optional<bool> isStoredToken(const std::optional<std::string>& token) {
  try {
    return storedToken() == token;
  } catch (const SignInError&) {
    return std::nullopt;
  }
}

SignOutOutcome tryToSignOut() {
  SignOutOutcome outcome;
  std::optional<std::string> token;
  outcome.left = forgetToken(token);
  for (const auto forget : {forgetFigures, news::forgetNews}) {
    try {
      forget();
    } catch (const SignInError& error) {
      if (!outcome.left) outcome.left = error;
    }
  }
  if (token) outcome.isWithdrawn = revokeToken(*token);
  return outcome;
}

bool signOut() {
  const auto outcome = tryToSignOut();
  if (outcome.left) throw SignInError(*outcome.left);
  return outcome.isWithdrawn;
}

}  // namespace companion
