#include "companion/window/sign_in_flow.hpp"

#include "companion/main_loop_tasks.hpp"
#include "companion/sign_in_words.hpp"
#include "companion/window/keyring_prompt.hpp"
#include "platform/processes/browser.hpp"

namespace companion::window {

namespace {

constexpr std::chrono::seconds timeLimit{600};

}  // namespace

SignInFlow::SignInFlow(State& state, std::function<void()> changed,
                       std::function<void(const SignInOutcome&)> finished)
    : state_(state), changed_(std::move(changed)), finished_(std::move(finished)) {}

void SignInFlow::enter(SignInPhase phase) {
  state_.signIn = phase;
  changed_();
}

void SignInFlow::start() {
  ++attempt_;
  state_.signInFailure.reset();
  state_.address.clear();
  enter(SignInPhase::preparing);
  SignInEvents events{.unlock = promptForKeyring,
                      .waiting =
                          [this](const std::string& address) {
                            state_.address = address;
                            state_.browserOpened = true;
                            enter(SignInPhase::waiting);
                            openBrowser();
                          },
                      .answered =
                          [this] {
                            hold_.emplace();
                            enter(SignInPhase::finishing);
                          },
                      .finished = [this](const SignInOutcome& outcome) { finish(outcome); }};
  signIn_ = std::make_unique<SignIn>(timeLimit, std::move(events));
}

void SignInFlow::openBrowser() {
  auto opened = std::make_shared<bool>(false);
  runBeside([opened, address = state_.address] { *opened = platform::openInBrowser(address); },
            [this, opened, attempt = attempt_] {
              if (attempt != attempt_) return;
              state_.browserOpened = *opened;
              changed_();
            });
}

void SignInFlow::finish(const SignInOutcome& outcome) {
  if (outcome.error) state_.signInFailure = describeSignInFailure(*outcome.error);
  state_.signIn = outcome.error ? SignInPhase::failed : SignInPhase::none;
  finished_(outcome);
  hold_.reset();
}

void SignInFlow::cancel() {
  if (state_.signIn != SignInPhase::preparing && state_.signIn != SignInPhase::waiting) return;
  ++attempt_;
  signIn_.reset();
  enter(SignInPhase::none);
}

void SignInFlow::dismiss() {
  if (state_.signIn == SignInPhase::failed) enter(SignInPhase::none);
}

}  // namespace companion::window
