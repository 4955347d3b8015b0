#include "companion/sign_in_error.hpp"

#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/text.hpp"

namespace companion {

namespace {

using platform::localizedFormat;
using platform::localizedString;

std::string describe(SignInError::Case kind, const std::string& detail) {
  using Case = SignInError::Case;
  switch (kind) {
    case Case::noClientFile:
      return localizedString(
          "There is no client file yet. Take one over with \"velmora client FILE\", then sign in.");
    case Case::unusableClientFile:
      return detail;
    case Case::noLoopbackAddress:
      return localizedString(
          "The client is of kind \"web\" and has no redirect address on this machine. Create one "
          "of kind \"Desktop app\", or add an address such as http://127.0.0.1:8642 to it.");
    case Case::portTaken:
      return localizedFormat(
          "Port %s of this machine cannot be had for the answer of the browser. Close the program "
          "that uses it, then sign in again.",
          {detail});
    case Case::keyringLocked:
      return localizedString("The keyring is locked. Unlock it, then try again.");
    case Case::keyringMissing:
      return localizedString(
          "No keyring can be reached. Start one, such as GNOME Keyring, then try again.");
    case Case::keyringFailed:
      return localizedFormat("The keyring did not do what it was asked (%s). Try again.", {detail});
    case Case::stateNotWritable:
      return localizedFormat(
          "Nothing can be stored in %s. Make room there, or look at its permissions, then try "
          "again.",
          {detail});
    case Case::denied:
      return localizedString(
          "Permission was denied in the browser. To see your figures, sign in again and allow it.");
    case Case::refused:
      return localizedFormat("The provider refused (%s). Sign in again.", {detail});
    case Case::unreachable:
      return localizedFormat(
          "The provider gave no usable answer (%s). Look at the network, then sign in again.",
          {detail});
    case Case::noRefreshToken:
      return localizedString(
          "The provider gave no lasting permission. Remove Velmora from the third-party access of "
          "your Google Account, then sign in again.");
    case Case::noPermission:
      return localizedString(
          "The permission to read AdSense figures was not given. Sign in again and leave it "
          "checked.");
    case Case::noAccount:
      return localizedString(
          "This Google Account has no AdSense account. Sign in again with the one that has.");
    case Case::timeLimit:
      return localizedString(
          "No answer came in time. If the browser shows an error such as redirect_uri_mismatch, "
          "it names the reason. Then sign in again.");
    case Case::cancelled:
      break;
  }
  return localizedString("The sign-in was cancelled.");
}

}  // namespace

SignInError::SignInError(Case errorCase, const std::string& detail)
    : kind(errorCase), description_(describe(errorCase, platform::oneLine(detail))) {}

}  // namespace companion
