#include "companion/failure_words.hpp"

#include "platform/foundation/localized_strings.hpp"
#include "platform/keychain/keychain.hpp"

namespace companion {

using platform::localizedString;

namespace {

/// Of what is wrong at the provider or on the way there.
FailureWords wordsForService(FailureKind kind) {
  switch (kind) {
    case FailureKind::serviceProblem:
      return {localizedString("Google has a problem"), localizedString("It will pass by itself.")};
    case FailureKind::tooManyRequests:
      return {localizedString("Google asks for a pause"),
              localizedString("There were too many requests. New figures come by themselves.")};
    case FailureKind::foreignPage:
      return {localizedString("The network answers in Google’s place"),
              localizedString("It may want you to sign in to it first: open any page in your "
                              "browser, do what it asks, then try again.")};
    case FailureKind::noNetwork:
      return {localizedString("Google cannot be reached"),
              localizedString("Check the network, then try again.")};
    case FailureKind::noAnswer:
      return {localizedString("Google does not answer"),
              localizedString("There is a connection, but no answer came. That usually passes; try "
                              "again later.")};
    default:
      return {localizedString("The figures could not be refreshed"),
              localizedString("Something came that was not expected. Try again later; the details "
                              "say what it was.")};
  }
}

}  // namespace

FailureWords wordsFor(FailureKind kind) {
  switch (kind) {
    case FailureKind::signInEnded:
      return {localizedString("Google ended the sign-in"),
              localizedString("Sign in again to get new figures.")};
    case FailureKind::clientRefused:
      return {localizedString("Google does not accept the client file"),
              localizedString("Its client was deleted or changed at Google. Choose another client "
                              "file, then sign in; with this one signing in is of no use.")};
    case FailureKind::apiNotEnabled:
      return {localizedString("The AdSense Management API is not enabled"),
              localizedString("Enable it in Google’s console, in the project of your client file. "
                              "After a few minutes, try again.")};
    case FailureKind::forbidden:
      return {localizedString("Google does not allow it"),
              localizedString("This Google Account may not read the figures. Sign in with the one "
                              "that has the AdSense account.")};
    case FailureKind::noAccount:
      return {localizedString("There is no AdSense account"),
              localizedString("This Google Account has no AdSense account. Sign in again with the "
                              "one that has.")};
    case FailureKind::signedOut:
      return {localizedString("Nobody is signed in"),
              localizedString("Sign in to see your figures.")};
    default:
      return wordsForService(kind);
  }
}

FailureWords wordsForMissingClientFile() {
  return {localizedString("There is no usable client file"),
          localizedString("Choose the client file again, or another one. Signing in is of no use "
                          "before.")};
}

FailureWords wordsForMissingPermission() {
  return {localizedString("Google does not allow it"),
          localizedString("The permission to read AdSense figures was not given. Sign in again and "
                          "leave it checked.")};
}

FailureWords wordsForKeyring(int status) {
  namespace keychain = platform::keychain_status;
  auto title = localizedString("The keyring cannot be read");
  if (status == keychain::interactionNotAllowed)
    return {title, localizedString("The keyring is locked. Unlock it, then try again.")};
  if (status == keychain::notAvailable)
    return {title, localizedString("No keyring can be reached. Start one, such as GNOME Keyring, "
                                   "then try again.")};
  return {title, localizedString("It does not hand out your sign-in. Log out of the desktop and in "
                                 "again, then try again.")};
}

}  // namespace companion
