#include "companion/sign_in_error.hpp"

#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/text.hpp"

namespace companion {

namespace {

using platform::localizedFormat;
using platform::localizedString;
using Case = SignInError::Case;

/// What is wrong with the client file, or where the browser is to come back to. Empty for any other
/// case.
std::string clientText(Case kind, const std::string& detail) {
  switch (kind) {
    case Case::noClientFile:
      return localizedString(
          "There is no client file yet. Take one over with \"velmora client FILE\", then sign in.");
    case Case::unusableClientFile:
      return detail;
    case Case::noLoopbackAddress:
      return localizedString(
          "The client is for a web site and has no redirect address on this machine. Create one "
          "of the type \"Desktop app\", or add an address such as http://127.0.0.1:8642 to it.");
    case Case::portTaken:
      return localizedFormat(
          "Port %s of this machine cannot be had for the answer of the browser. Close the program "
          "that uses it, then sign in again.",
          {detail});
    case Case::portForbidden:
      return localizedFormat(
          "Port %s of this machine is kept for the system's own services. Give the client a "
          "redirect address with a higher port, such as http://127.0.0.1:8642, and take its file "
          "over anew.",
          {detail});
    case Case::noFreePort:
      return localizedString(
          "No port of this machine is free for the answer of the browser. Close programs that "
          "hold many connections, then sign in again.");
    case Case::noLoopback:
      return localizedString(
          "This machine has no address 127.0.0.1 for the answer of the browser. Bring its "
          "loopback network up, then sign in again.");
    case Case::notListening:
      return localizedFormat(
          "Velmora cannot wait for the answer of the browser (%s). Sign in again.", {detail});
    default:
      return "";
  }
}

/// What is wrong with what is kept on this machine. Empty for any other case.
std::string storeText(Case kind, const std::string& detail) {
  switch (kind) {
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
    case Case::figuresLeft:
      return localizedFormat(
          "The former figures could not be removed from %s. Make room there, or look at its "
          "permissions, then sign out.",
          {detail});
    default:
      return "";
  }
}

/// What the provider, or the user there, did not give. Empty for any other case.
std::string providerText(Case kind, const std::string& detail) {
  switch (kind) {
    case Case::denied:
      return localizedString(
          "Permission was denied in the browser. To see your figures, sign in again and allow it.");
    case Case::refused:
      return localizedFormat("Google refused (%s). Sign in again.", {detail});
    case Case::unavailable:
      return localizedFormat(
          "Google cannot answer at the moment (%s). Wait a while, then sign in again.", {detail});
    case Case::unreachable:
      return localizedFormat(
          "Google gave no usable answer (%s). Look at the network, then sign in again.", {detail});
    case Case::noRefreshToken:
      return localizedString(
          "Google gave no lasting permission. Remove Velmora from the third-party access of "
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
    default:
      return "";
  }
}

std::string describe(Case kind, const std::string& detail) {
  for (const auto textOf : {clientText, storeText, providerText}) {
    if (auto text = textOf(kind, detail); !text.empty()) return text;
  }
  return localizedString("The sign-in was cancelled.");
}

}  // namespace

SignInError::SignInError(Case errorCase, const std::string& text)
    : kind(errorCase), detail(platform::oneLine(text)), description_(describe(errorCase, detail)) {}

}  // namespace companion
