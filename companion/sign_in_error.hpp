#pragma once

#include <exception>
#include <string>

namespace companion {

/// Why nobody could be signed in, or out; `what()` says what happened and what to do next, in the
/// user's language, and never holds a secret.
class SignInError : public std::exception {
 public:
  enum class Case {
    noClientFile,
    unusableClientFile,  ///< `detail` says which one and why, in the user's language
    noLoopbackAddress,   ///< a client of kind "web" whose redirect addresses all lie elsewhere
    portTaken,
    portForbidden,  ///< kept for the system's own services
    noFreePort,
    noLoopback,    ///< the machine has no 127.0.0.1
    notListening,  ///< `detail` says why, as the system puts it
    keyringLocked,
    keyringMissing,
    keyringFailed,
    stateNotWritable,  ///< the figures of the former user could not be put aside
    figuresLeft,       ///< they could not be removed
    denied,            ///< the user refused
    refused,           ///< the provider refused, at the authorization or at the token endpoint
    unavailable,       ///< the token endpoint has trouble of its own
    unreachable,       ///< the token endpoint gave no answer that can be read
    noRefreshToken,
    noPermission,  ///< the granted scope lacks AdSense
    noAccount,     ///< the Google account has no AdSense account
    timeLimit,
    cancelled
  };

  /// `detail` completes the cases that name something: a port, the provider's message.
  explicit SignInError(Case errorCase, const std::string& detail = "");

  [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

  Case kind;
  std::string detail;  ///< one line, as it was given

 private:
  std::string description_;
};

}  // namespace companion
