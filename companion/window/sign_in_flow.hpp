#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "companion/sign_in.hpp"
#include "companion/window/application_hold.hpp"
#include "companion/window/model.hpp"

namespace companion::window {

/// A sign-in as the window shows it: the keyring's prompt, the browser, the end.
class SignInFlow {
 public:
  /// `finished` is told of every end but that of one that was cancelled.
  SignInFlow(State& state, std::function<void()> changed,
             std::function<void(const SignInOutcome&)> finished);

  void start();
  /// Ends it at once, whatever is open, unless the browser's answer has come.
  void cancel();
  /// Leaves the page that says why it failed.
  void dismiss();
  void openBrowser();

 private:
  void enter(SignInPhase phase);
  void finish(const SignInOutcome& outcome);

  State& state_;
  std::function<void()> changed_;
  std::function<void(const SignInOutcome&)> finished_;
  std::unique_ptr<SignIn> signIn_;
  std::optional<ApplicationHold> hold_;
  unsigned attempt_ = 0;  ///< what belongs to an earlier one comes too late
};

}  // namespace companion::window
