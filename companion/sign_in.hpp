#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "companion/sign_in_error.hpp"

namespace companion {

/// How a sign-in ended.
struct SignInOutcome {
  std::optional<SignInError> error;  ///< nothing was changed
  std::string account;  ///< the AdSense account's display name, else its id; may be unknown
};

/// What a sign-in tells, always from the main loop.
struct SignInEvents {
  /// The browser is to open this address; from now on an answer is awaited.
  std::function<void(const std::string& address)> waiting;
  /// The browser's answer has come; a cancellation comes too late from here on.
  std::function<void()> answered;
  /// The end, once.
  std::function<void(const SignInOutcome&)> finished;
};

/// One sign-in with the user's browser: the authorization code flow for native applications
/// (RFC 8252) with PKCE (RFC 7636). Needs a running GLib main loop and never blocks it: keyring
/// and network are used beside it. Until the new token is stored, nothing of the former user goes.
class SignIn {
 public:
  SignIn(std::chrono::seconds timeLimit, SignInEvents events);
  ~SignIn();
  SignIn(const SignIn&) = delete;
  SignIn& operator=(const SignIn&) = delete;

  /// Ends it with the error `cancelled`, at once, if the answer has not come yet.
  void cancel();

 private:
  class Flow;
  std::shared_ptr<Flow> flow_;
};

}  // namespace companion
