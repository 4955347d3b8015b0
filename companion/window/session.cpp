#include "companion/window/session.hpp"

#include "companion/account_name.hpp"
#include "companion/client_file.hpp"
#include "companion/former_figures.hpp"
#include "companion/main_loop_tasks.hpp"
#include "companion/running_host.hpp"
#include "companion/sign_in_words.hpp"
#include "companion/user_data.hpp"
#include "companion/window/application_hold.hpp"
#include "companion/window/keyring_prompt.hpp"
#include "companion/window/keyring_work.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/keychain/keychain.hpp"

namespace companion::window {

namespace {

using platform::localizedString;

Keyring keyringNow() {
  namespace status = platform::keychain_status;
  const auto readiness = platform::keychainReadiness();
  if (readiness == status::interactionNotAllowed) return Keyring::locked;
  // One that holds nothing yet is made when it is needed.
  return readiness == status::notAvailable ? Keyring::away : Keyring::usable;
}

Notice noticeForWithdrawal() {
  return {.title = localizedString("You are signed out here, but Google does not know"),
          .advice = localizedString("Google could not be told. Remove Velmora’s access in your "
                                    "Google Account as well."),
          .remedy = Remedy::openPage,
          .page = accountAccessPage,
          .canBeClosed = true};
}

Notice noticeForSignOut(const SignInError& error) {
  const auto failure = describeSignInFailure(error);
  return {.title = localizedString("You are still signed in"),
          .advice = failure.advice,
          .details = failure.details,
          .canBeClosed = true};
}

Notice noticeForFile(const std::string& advice, const std::string& details = "") {
  return {
      .title = localizedString("This file cannot be used"), .advice = advice, .details = details};
}

/// Absent when the file was taken over.
std::optional<Notice> problemOfTaking(const std::string& file) {
  try {
    companion::takeOverClientFile(file);
    return std::nullopt;
  } catch (const ClientFileError& error) {
    return noticeForFile(error.advice(), error.detail());
  } catch (const std::exception& error) {
    return noticeForFile(error.what());
  }
}

}  // namespace

Session::Session()
    : signIn_(
          state_, [this] { changed(); },
          [this](const SignInOutcome& outcome) { signInFinished(outcome); }),
      goals_(
          state_, [this] { changed(); },
          [this] {
            refreshRunningHost();
            widgetChanged();
          }),
      figures_(
          state_, [this] { changed(); },
          [this] {
            if (!state_.failure) {
              refreshRunningHost();
              history_.update();
            }
            load();
          }),
      history_(state_, [this] { changed(); }) {}

void Session::changed() const {
  if (listener_.changed) listener_.changed();
}

void Session::widgetChanged() const {
  if (listener_.widgetChanged) listener_.widgetChanged();
}

void Session::load() {
  struct Loaded {
    Status status;
    Keyring keyring = Keyring::usable;
    std::string accountName;
  };
  auto loaded = std::make_shared<Loaded>();
  runBeside(
      [loaded] {
        settleFigures();
        loaded->status = currentStatus();
        if (!loaded->status.isSignedIn) loaded->keyring = keyringNow();
        if (loaded->status.account) loaded->accountName = keptAccountName(*loaded->status.account);
      },
      [this, loaded] { take(loaded->status, loaded->keyring, loaded->accountName); });
}

void Session::take(const Status& status, Keyring keyring, const std::string& accountName) {
  const auto former = state_.status;
  const bool isOther = !state_.isLoaded || status.isSignedIn != former.isSignedIn ||
                       status.goals != former.goals || status.snapshot != former.snapshot;
  const bool isOtherUser =
      !status.isSignedIn || (former.account && status.account != former.account);
  if (isOtherUser) forgetUser();
  if (!state_.isLoaded) state_.isSigningOut = false;
  state_.isLoaded = true;
  state_.status = status;
  state_.keyring = keyring;
  if (goals_.isStoring()) state_.status.goals = former.goals;
  if (status.account) state_.accountName = accountName;
  changed();
  if (isOther) widgetChanged();
  if (wantsRefresh(state_)) figures_.refresh();
  history_.load();
}

/// Everything that belongs to one user and is not read anew.
void Session::forgetUser() {
  state_.accountName.clear();
  figures_.forget();
  history_.forget();
}

void Session::unlockKeyring() {
  promptForKeyring([this](bool usable) {
    if (usable) load();
  });
}

void Session::takeOverClientFile(const std::string& file) {
  auto problem = std::make_shared<std::optional<Notice>>();
  runBeside([file, problem] { *problem = problemOfTaking(file); },
            [this, problem, hold = std::make_shared<ApplicationHold>()] {
              state_.clientFileProblem = *problem;
              if (!*problem && state_.failure) state_.triedAt.reset();
              dismissFailure();
              if (!*problem) load();
              changed();
            });
}

void Session::signIn() {
  state_.message.reset();
  signIn_.start();
}

void Session::signInFinished(const SignInOutcome& outcome) {
  if (!outcome.error) {
    forgetUser();
    state_.isLoaded = false;
    state_.accountName = outcome.account;
    refreshRunningHost();
    load();
  }
  changed();
  if (listener_.signInEnded) listener_.signInEnded();
}

void Session::signOut() {
  state_.isSigningOut = true;
  state_.message.reset();
  changed();
  auto isWithdrawn = std::make_shared<bool>(true);
  runWithKeyring([isWithdrawn] { *isWithdrawn = companion::signOut(); },
                 [this, isWithdrawn](const std::optional<SignInError>& error) {
                   if (error) state_.message = noticeForSignOut(*error);
                   if (!error) signedOut(*isWithdrawn);
                   state_.isLoaded = false;
                   load();
                 });
}

void Session::signedOut(bool isWithdrawn) {
  if (!isWithdrawn) state_.message = noticeForWithdrawal();
  forgetUser();
  refreshRunningHost();
}

void Session::closeMessage() {
  state_.message.reset();
  changed();
}

}  // namespace companion::window
