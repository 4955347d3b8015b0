#include <gmock/gmock.h>

#include <cstdlib>
#include <thread>

#include "VelmoraWidget/SharedKeychain.hpp"
#include "companion/sign_in.hpp"
#include "companion/user_data.hpp"
#include "platform/foundation/background_tasks.hpp"
#include "platform/foundation/bundle.hpp"
#include "platform/foundation/glib.hpp"
#include "tests/support/environment.hpp"
#include "tests/support/real_keyring.hpp"
#include "tests/support/replaced_constants.hpp"

using namespace companion;
using namespace std::chrono_literals;
using Case = SignInError::Case;

namespace {

tests::RealKeyring& keyring() {
  static tests::RealKeyring instance;
  return instance;
}

/// A sign-in while the keyring is locked, with what the window does.
class Unlocking : public testing::Test {
 public:
  static void SetUpTestSuite() {
    keyring();
    setenv("XDG_STATE_HOME", std::getenv("HOME"), 1);
    setenv("PATH", "/nowhere", 1);  // no host to tell
    tests::setRevocationURL("http://127.0.0.1:9/revoke");
    std::filesystem::create_directories(*platform::userResourceFolder());
    tests::writeFile(*platform::userResourceFolder() / "client_secret.json",
                     R"({"installed":{"client_id":"i","client_secret":"s",)"
                     R"("auth_uri":"https://p.example/a","token_uri":"https://p.example/t"}})");
  }
  void TearDown() override {
    signIn_.reset();
    platform::drainBackgroundTasks();
    keyring().unlock();
  }

  /// Starts it and waits until the user is asked for the keyring.
  void startLocked() {
    keyring().lock();
    prompts_.clear();
    SignInEvents events;
    events.unlock = [this](const auto& done) { prompts_.push_back(done); };
    events.waiting = [this](const auto&) { addresses_ += 1; };
    events.finished = [this](const auto& outcome) { ends_.push_back(outcome.error->kind); };
    signIn_ = std::make_unique<SignIn>(60s, std::move(events));
    waitFor([this] { return !prompts_.empty(); });
  }

  static void waitFor(const std::function<bool()>& happened) {
    const auto deadline = std::chrono::steady_clock::now() + 20s;
    while (!happened()) {
      ASSERT_LT(std::chrono::steady_clock::now(), deadline);
      g_main_context_iteration(nullptr, FALSE);
      std::this_thread::sleep_for(1ms);
    }
  }

  /// Until everything is over that was started.
  static void settle() {
    platform::drainBackgroundTasks();
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
  }

 protected:
  std::unique_ptr<SignIn> signIn_;
  std::vector<std::function<void(bool)>> prompts_;
  int addresses_ = 0;
  std::vector<Case> ends_;
};

}  // namespace

TEST_F(Unlocking, goesOnOnceTheKeyringIsOpen) {
  startLocked();
  keyring().unlock();
  prompts_.front()(true);
  waitFor([this] { return addresses_ == 1; });
  EXPECT_TRUE(ends_.empty());
}

TEST_F(Unlocking, aCancellationReachesTheOpenPrompt) {
  startLocked();
  signIn_->cancel();
  EXPECT_THAT(ends_, testing::ElementsAre(Case::cancelled));
  keyring().unlock();
  prompts_.front()(true);
  settle();
  EXPECT_EQ(addresses_, 0) << "no browser opens afterwards";
  EXPECT_EQ(ends_.size(), 1U);

  startLocked();
  signIn_.reset();
  prompts_.front()(true);
  settle();
  EXPECT_EQ(addresses_, 0) << "and none for a window that has gone";
}

TEST_F(Unlocking, whoDoesNotOpenItIsAskedOnce) {
  startLocked();
  prompts_.front()(false);
  EXPECT_THAT(ends_, testing::ElementsAre(Case::keyringLocked));
  ends_.clear();
  startLocked();
  prompts_.front()(true);
  waitFor([this] { return !ends_.empty(); });
  EXPECT_THAT(ends_, testing::ElementsAre(Case::keyringLocked)) << "it says so, but it is locked";
  EXPECT_EQ(prompts_.size(), 1U);
}

TEST_F(Unlocking, twoSignOutsAtOnceBothFindNobodyLeft) {
  for (int round = 0; round < 20; ++round) {
    keyring().store(velmora::refreshTokenAccount, "token");
    SignOutOutcome other;
    std::thread another([&other] { other = tryToSignOut(); });
    const auto outcome = tryToSignOut();
    another.join();
    for (const auto& end : {outcome, other})
      ASSERT_FALSE(end.left) << round << ": " << end.left->what();
    ASSERT_EQ(keyring().count(velmora::refreshTokenAccount), 0);
  }
}
