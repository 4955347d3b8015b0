#include "platform/keychain/keychain.hpp"

#include <gmock/gmock.h>

#include <chrono>

#include "tests/support/real_keyring.hpp"

using namespace platform;
using tests::RealKeyring;

namespace {

RealKeyring& keyring() {
  static RealKeyring instance;
  return instance;
}

/// The secret found, or the status that kept it away.
std::string found(const std::string& account) {
  const auto result = lookUpGenericPassword("com.brenvik.velmora", account,
                                            "Q7M2K9D4XW.com.brenvik.velmora.shared");
  return result.data.value_or(std::to_string(result.status));
}

}  // namespace

TEST(Keychain, takesTheItemModifiedLast) {
  const auto first = keyring().store("twice", "first");
  const auto second = keyring().store("twice", "second", keyring().makeKeyring("second"));
  keyring().modifyLast(first, "first again");
  EXPECT_EQ(found("twice"), "first again");
  keyring().modifyLast(second, "second again");
  EXPECT_EQ(found("twice"), "second again");
}

TEST(Keychain, findsAnOpenItemBesideALockedOne) {
  const auto other = keyring().makeKeyring("other");
  keyring().store("split", "in another keyring", other);
  const auto item = keyring().store("split", "in the login keyring");
  keyring().modifyLast(item, "in the login keyring, later");
  keyring().lock();
  EXPECT_EQ(found("split"), "in another keyring");
  keyring().lock(other);
  EXPECT_EQ(found("split"), std::to_string(keychain_status::interactionNotAllowed));
  keyring().unlock();
  EXPECT_EQ(found("split"), "in the login keyring, later");
  EXPECT_EQ(found("nobody"), std::to_string(keychain_status::itemNotFound));
}

TEST(Keychain, storingLeavesOneItemAndRemovingNone) {
  const KeychainKey key{"com.brenvik.velmora", "written", "Q7M2K9D4XW.com.brenvik.velmora.shared"};
  EXPECT_EQ(removeGenericPassword(key), keychain_status::itemNotFound);
  const auto other = keyring().makeKeyring("elsewhere");
  keyring().store("written", "by somebody");
  keyring().store("written", "by somebody else", other);
  keyring().store("spared", "of another account");
  for (const char* secret : {"first", "second"}) {
    EXPECT_EQ(storeGenericPassword(key, "Velmora", secret), keychain_status::success);
    EXPECT_EQ(found("written"), secret);
    EXPECT_EQ(keyring().count("written"), 1);
  }
  EXPECT_EQ(keychainReadiness(), keychain_status::success);
  keyring().lock();
  EXPECT_EQ(keychainReadiness(), keychain_status::interactionNotAllowed);
  EXPECT_EQ(storeGenericPassword(key, "Velmora", "third"), keychain_status::interactionNotAllowed);
  EXPECT_EQ(removeGenericPassword(key), keychain_status::interactionNotAllowed);
  keyring().unlock();
  EXPECT_EQ(found("written"), "second");
  EXPECT_EQ(removeGenericPassword(key), keychain_status::success);
  EXPECT_EQ(keyring().count("written"), 0);
  EXPECT_EQ(found("spared"), "of another account");
  keyring().setDefault("/");
  EXPECT_EQ(keychainReadiness(), keychain_status::noDefaultKeychain);
  EXPECT_EQ(storeGenericPassword(key, "Velmora", "x"), keychain_status::noDefaultKeychain);
  keyring().setDefault(RealKeyring::login);
}

TEST(Keychain, waitsForAHangingServiceOnlySoLong) {
  const auto start = std::chrono::steady_clock::now();
  keyring().setAnswering(false);
  EXPECT_EQ(found("twice"), std::to_string(keychain_status::timedOut));
  keyring().setAnswering(true);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
  EXPECT_EQ(found("twice"), "second again");
}
