#include "companion/former_figures.hpp"

#include <optional>
#include <tuple>

#include "companion/sign_in_error.hpp"
#include "companion/user_data.hpp"
#include "platform/foundation/digest.hpp"
#include "platform/foundation/user_defaults.hpp"

namespace companion {

namespace {

using platform::UserDefaults;

constexpr const char* ownerKey = "companion.former.owner";

std::string asideKey(const std::string& key) { return "companion.former." + key; }

/// Tells the users of two tokens apart without holding a token; empty for nobody.
std::string ownerOf(const std::optional<std::string>& token) {
  return token ? platform::sha256Base64Url(*token) : "";
}

/// What is aside belongs to whoever `token` is, or to nobody any more.
void settleFor(const std::optional<std::string>& token) {
  const auto defaults = UserDefaults::standard();
  const auto owner = defaults.string(ownerKey);
  if (!owner) return;
  const bool isBack = ownerOf(token) == *owner;
  // What cannot be stored now is settled the next time.
  std::ignore = defaults.change([isBack](auto& changes) {
    for (const auto& key : figureKeys()) {
      if (isBack) changes.move(asideKey(key), key);
      changes.remove(asideKey(key));
    }
    changes.remove(ownerKey);
  });
}

}  // namespace

void putFiguresAside() {
  // One look at the token decides it all: another sign-in may store its own at any moment.
  const auto token = storedToken();
  settleFor(token);
  const bool isDone = UserDefaults::standard().change([&token](auto& changes) {
    for (const auto& key : figureKeys()) changes.move(key, asideKey(key));
    changes.setString(ownerKey, ownerOf(token));
  });
  if (!isDone) failToStore();
}

void settleFigures() {
  if (!UserDefaults::standard().string(ownerKey)) return;
  try {
    settleFor(storedToken());
  } catch (const SignInError&) {
    return;  // the keyring will be open again
  }
}

std::vector<std::string> asideKeys() {
  std::vector<std::string> keys{ownerKey};
  for (const auto& key : figureKeys()) keys.push_back(asideKey(key));
  return keys;
}

}  // namespace companion
