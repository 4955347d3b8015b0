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
  std::optional<SignInError> error;  ///< with it, the former user is still there as before
  std::string account;  ///< the AdSense account's display name, else its id; may be unknown
};

/// What a sign-in tells, always from the main loop.
struct SignInEvents {
  /// The keyring is locked, or becomes so: the user is to be asked to unlock it, and `done` to be
  /// called from the main loop with whether it can be used now. It comes to nothing once the
  /// sign-in has ended. Without this event, a locked keyring ends the sign-in.
  std::function<void(std::function<void(bool isUsable)> done)> unlock;
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

  /// Ends it with the error `cancelled`, at once, if the answer has not come yet: while the keyring
  /// is looked at or the user is asked to unlock it, too. Then no address is told any more.
  void cancel();

 private:
  class Flow;
  std::shared_ptr<Flow> flow_;
};

}  // namespace companion
