#pragma once

#include <exception>
#include <string>

namespace companion {

/// Why figures could not be fetched, as far as a user can tell the difference.
enum class FailureKind {
  signInEnded,     ///< the provider does not take the refresh token any more
  clientRefused,   ///< it does not take the client, or there is no usable client file
  serviceProblem,  ///< the provider's own trouble
  tooManyRequests,
  apiNotEnabled,  ///< in the project of the client
  forbidden,      ///< this user may not read, or did not permit it
  foreignPage,    ///< somebody between here and the provider answers
  noNetwork,
  noAnswer,   ///< on a connection that stands
  noAccount,  ///< the user has no AdSense account
  keyring,    ///< locked, missing or broken
  signedOut,  ///< nobody is signed in
  other
};

/// What helps.
enum class Remedy { tryAgain, signIn, chooseAccount, chooseClientFile, openPage, unlockKeyring };

/// A failed refresh in a person's words. All texts are in the user's language and hold no secret.
struct Failure {
  FailureKind kind = FailureKind::other;
  std::string title;        ///< a few words
  std::string advice;       ///< what it means and what to do
  std::string details;      ///< the technical text, one line
  std::string description;  ///< of the error itself, whole
  bool passes = false;      ///< by itself
  Remedy remedy = Remedy::tryAgain;
  std::string page;  ///< an https address of the provider's console, for `openPage`
};

/// Tells apart what fetchSnapshot and its parts throw.
Failure describeFailure(const std::exception& error);

/// "signInEnded" and so on, for other programs.
std::string nameOf(FailureKind kind);
/// And back; `other` for a name that is none.
FailureKind failureKindNamed(const std::string& text);

}  // namespace companion
