#include "platform/keychain/keychain.hpp"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <vector>

#include "platform/keychain/deadline.hpp"
#include "tests/support/real_keyring.hpp"

using namespace platform;
using namespace std::chrono_literals;
using tests::RealKeyring;

namespace {

RealKeyring& keyring() {
  static RealKeyring instance;
  return instance;
}

KeychainKey keyOf(const std::string& account) {
  return {"com.brenvik.velmora", account, "Q7M2K9D4XW.com.brenvik.velmora.shared"};
}

/// The secret found, or the status that kept it away.
std::string found(const std::string& account) {
  const auto key = keyOf(account);
  const auto result = lookUpGenericPassword(key.service, key.account, key.accessGroup);
  return result.data.value_or(std::to_string(result.status));
}

/// Each case has the keyring, whichever comes first.
class Keychain : public testing::Test {
 protected:
  static void SetUpTestSuite() { keyring(); }
};

/// Does something over and over beside what it lives for.
class Meanwhile {
 public:
  explicit Meanwhile(std::function<void()> deed)
      : thread_([this, deed = std::move(deed)] {
          while (!isOver_) deed();
        }) {}
  ~Meanwhile() {
    isOver_ = true;
    thread_.join();
  }

 private:
  std::atomic<bool> isOver_ = false;
  std::thread thread_;
};

}  // namespace

TEST_F(Keychain, takesTheItemModifiedLast) {
  const auto first = keyring().store("twice", "first");
  const auto second = keyring().store("twice", "second", keyring().makeKeyring("second"));
  keyring().modifyLast(first, "first again");
  EXPECT_EQ(found("twice"), "first again");
  keyring().modifyLast(second, "second again");
  EXPECT_EQ(found("twice"), "second again");
}

TEST_F(Keychain, findsAnOpenItemBesideALockedOne) {
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

TEST_F(Keychain, storingLeavesOneItemAndRemovingNone) {
  const auto key = keyOf("written");
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

TEST_F(Keychain, anItemThatVanishesIsNoFailure) {
  const auto other = keyring().makeKeyring("fleeting");
  const Meanwhile comesAndGoes([&] {
    keyring().remove(keyring().store("fleeting", "here", other));
    std::this_thread::sleep_for(20ms);
  });
  for (int i = 0; i < 150; ++i) {
    EXPECT_THAT(found("fleeting"),
                testing::AnyOf("here", std::to_string(keychain_status::itemNotFound)));
  }
}

TEST_F(Keychain, twoRemovalsAtOnceBothSucceed) {
  for (int i = 0; i < 40; ++i) {
    const auto item = keyring().store("leaving", "x");
    std::thread somebodyElse([&item] {
      try {
        keyring().remove(item);
      } catch (const std::runtime_error&) {
        return;  // it was the later one
      }
    });
    EXPECT_THAT(removeGenericPassword(keyOf("leaving")),
                testing::AnyOf(keychain_status::success, keychain_status::itemNotFound));
    somebodyElse.join();
    EXPECT_EQ(keyring().count("leaving"), 0);
  }
}

TEST_F(Keychain, waitsForAHangingServiceOnlySoLong) {
  keyring().store("patient", "still here");
  const auto start = std::chrono::steady_clock::now();
  keyring().setAnswering(false);
  EXPECT_EQ(found("patient"), std::to_string(keychain_status::timedOut));
  keyring().setAnswering(true);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 15s);
  EXPECT_EQ(found("patient"), "still here");
}

TEST(KeychainDeadline, isKeptWhateverTheLibraryDoes) {
  const auto begin = std::chrono::steady_clock::now();
  const auto hanging = [](GCancellable*) {
    std::this_thread::sleep_for(3s);
    return KeychainLookup{};
  };
  EXPECT_EQ(withinDeadline<KeychainLookup>(hanging, 50ms).status, keychain_status::timedOut);
  const auto quick = [](GCancellable*) { return KeychainLookup{0, "secret"}; };
  EXPECT_EQ(withinDeadline<KeychainLookup>(quick, 5s).data, "secret") << "in nobody's way";
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
}

TEST(KeychainDeadline, operationsTakeTurns) {
  std::atomic<int> under{0};
  std::atomic<int> most{0};
  const auto operation = [&](GCancellable*) {
    most = std::max<int>(most, ++under);
    std::this_thread::sleep_for(20ms);
    --under;
    return keychain_status::success;
  };
  std::vector<std::thread> callers;
  for (int i = 0; i < 5; ++i)
    callers.emplace_back([&] { withinDeadline<std::int32_t>(operation, 5s); });
  for (auto& caller : callers) caller.join();
  EXPECT_EQ(most, 1);
}
