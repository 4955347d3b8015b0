#include "companion/window/session.hpp"

#include "companion/beside.hpp"
#include "companion/browser.hpp"
#include "companion/running_host.hpp"
#include "companion/user_data.hpp"
#include "companion/window/keyring_prompt.hpp"
#include "companion/window/widgets.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

namespace {

using platform::localizedString;

constexpr std::chrono::seconds signInTimeLimit{600};

void hold() { g_application_hold(g_application_get_default()); }
void release() { g_application_release(g_application_get_default()); }

bool keyringIsLocked() {
  try {
    requireKeyring();
  } catch (const SignInError& error) {
    return error.kind == SignInError::Case::keyringLocked;
  }
  return false;
}

}  // namespace

struct Session::Loaded {
  Status status;
  bool isKeyringLocked = false;
};

void Session::changed() const {
  if (listener_.changed) listener_.changed();
}

void Session::say(const std::string& message) const {
  if (listener_.said) listener_.said(message);
}

void Session::load() {
  auto loaded = std::make_shared<Loaded>();
  runBeside(
      [loaded] {
        loaded->status = currentStatus();
        loaded->isKeyringLocked = !loaded->status.isSignedIn && keyringIsLocked();
      },
      [this, loaded] { take(*loaded); });
}

void Session::take(const Loaded& loaded) {
  const bool other = !state_.isLoaded || loaded.status.isSignedIn != state_.status.isSignedIn ||
                     loaded.status.goals != state_.status.goals ||
                     loaded.status.snapshot != state_.status.snapshot;
  if (state_.status.account && loaded.status.account != state_.status.account)
    state_.accountName.clear();
  const auto goals = state_.status.goals;
  state_.isLoaded = true;
  state_.status = loaded.status;
  if (isStoring_) state_.status.goals = goals;
  state_.isKeyringLocked = loaded.isKeyringLocked;
  changed();
  if (other && listener_.widgetChanged) listener_.widgetChanged();
  if (wantsRefresh(state_) && !state_.failure) refresh();
}

void Session::unlockKeyring() {
  promptForKeyring([this](bool usable) {
    if (usable) load();
  });
}

void Session::write(Work work, std::function<void(const std::string&)> done, bool mayPrompt) {
  struct Outcome {
    std::string problem;
    bool isLocked = false;
  };
  auto outcome = std::make_shared<Outcome>();
  hold();
  runBeside(
      [work, outcome] {
        try {
          work();
        } catch (const SignInError& error) {
          outcome->problem = error.what();
          outcome->isLocked = error.kind == SignInError::Case::keyringLocked;
        } catch (const std::exception& error) {
          outcome->problem = error.what();
        }
      },
      [this, work, done, mayPrompt, outcome] {
        if (outcome->isLocked && mayPrompt) {
          promptForKeyring([this, work, done, outcome](bool usable) {
            if (usable)
              write(work, done, false);
            else
              done(outcome->problem);
          });
        } else {
          done(outcome->problem);
        }
        release();
      });
}

void Session::takeOverClientFile(const std::string& file) {
  write([file] { companion::takeOverClientFile(file); },
        [this](const std::string& problem) {
          state_.clientFileError = problem;
          if (problem.empty()) load();
          changed();
        });
}

void Session::storeGoals(const velmora::Objectives& goals) {
  if (goals == state_.status.goals) return;
  if (!isStoring_) storedGoals_ = state_.status.goals;
  state_.status.goals = goals;
  changed();
  if (!isStoring_) storeLatestGoals();
}

/// One after the other, so that the last ones stay.
void Session::storeLatestGoals() {
  isStoring_ = true;
  const auto goals = state_.status.goals;
  write([goals] { companion::storeGoals(goals); },
        [this, goals](const std::string& problem) {
          isStoring_ = false;
          if (!problem.empty()) {
            state_.status.goals = storedGoals_;
            say(problem);
            return changed();
          }
          storedGoals_ = goals;
          if (state_.status.goals != goals) return storeLatestGoals();
          refreshRunningHost();
          if (listener_.widgetChanged) listener_.widgetChanged();
        });
}

void Session::signOut() {
  auto isWithdrawn = std::make_shared<bool>(true);
  write([isWithdrawn] { *isWithdrawn = companion::signOut(); },
        [this, isWithdrawn](const std::string& problem) {
          if (!problem.empty()) return say(problem);
          if (!*isWithdrawn)
            say(
                localizedString("Google could not be told. Remove Velmora’s access in your Google "
                                "Account as well."));
          state_.accountName.clear();
          state_.failure.reset();
          refreshRunningHost();
          load();
        });
}

void Session::refresh() {
  if (state_.isRefreshing || !state_.status.isSignedIn) return;
  state_.isRefreshing = true;
  changed();
  auto failure = std::make_shared<std::optional<RefreshFailure>>();
  auto loaded = std::make_shared<Loaded>();
  runBeside(
      [failure, loaded] {
        *failure = refreshFigures();
        loaded->status = currentStatus();
        loaded->isKeyringLocked = !loaded->status.isSignedIn && keyringIsLocked();
      },
      [this, failure, loaded] {
        state_.isRefreshing = false;
        state_.failure = *failure;
        if (!*failure) refreshRunningHost();
        take(*loaded);
      });
}

void Session::signIn() { startSignIn(true); }

void Session::startSignIn(bool mayPrompt) {
  state_.signIn = SignInPhase::preparing;
  state_.signInError.clear();
  state_.address.clear();
  changed();
  signIn_ = std::make_unique<SignIn>(
      signInTimeLimit, SignInEvents{[this](const std::string& address) { waitForBrowser(address); },
                                    [this] {
                                      hold();
                                      isHeld_ = true;
                                      state_.signIn = SignInPhase::finishing;
                                      changed();
                                    },
                                    [this, mayPrompt](const SignInOutcome& outcome) {
                                      signInFinished(outcome, mayPrompt);
                                    }});
}

void Session::waitForBrowser(const std::string& address) {
  state_.signIn = SignInPhase::waiting;
  state_.address = address;
  state_.browserOpened = true;
  changed();
  openBrowserAgain();
}

void Session::openBrowserAgain() {
  auto opened = std::make_shared<bool>(false);
  runBeside([opened, address = state_.address] { *opened = openInBrowser(address); },
            [this, opened] {
              state_.browserOpened = *opened;
              changed();
            });
}

void Session::signInFinished(const SignInOutcome& outcome, bool mayPrompt) {
  if (std::exchange(isHeld_, false)) release();
  if (!outcome.error) {
    state_.signIn = SignInPhase::none;
    state_.isLoaded = false;
    state_.accountName = outcome.account;
    state_.failure.reset();
    refreshRunningHost();
    load();
    if (listener_.signedIn) listener_.signedIn();
    return;
  }
  if (outcome.error->kind == SignInError::Case::keyringLocked && mayPrompt) {
    return promptForKeyring([this, outcome](bool usable) {
      if (usable)
        startSignIn(false);
      else
        signInFinished(outcome, false);
    });
  }
  const bool cancelled = outcome.error->kind == SignInError::Case::cancelled;
  state_.signIn = cancelled ? SignInPhase::none : SignInPhase::failed;
  state_.signInError = outcome.error->what();
  changed();
}

void Session::cancelSignIn() {
  if (signIn_ && state_.signIn != SignInPhase::finishing) signIn_->cancel();
}

void Session::dismissFailure() {
  state_.signIn = SignInPhase::none;
  changed();
}

}  // namespace companion::window
