#include "companion/sign_in_words.hpp"

#include "companion/failure_words.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/keychain/keychain.hpp"

namespace companion {

using platform::localizedFormat;
using platform::localizedString;

namespace {

using Case = SignInError::Case;
namespace status = platform::keychain_status;

struct Answer {
  FailureWords words;
  Remedy remedy = Remedy::tryAgain;
  std::string page;
};

bool names(const std::string& text, std::initializer_list<const char*> codes) {
  for (const auto* code : codes)
    if (text.find(code) != std::string::npos) return true;
  return false;
}

Answer answerForRefusal(const std::string& detail) {
  if (names(detail, {"invalid_client", "deleted_client", "unauthorized_client",
                     "redirect_uri_mismatch", "org_internal"}))
    return {wordsFor(FailureKind::clientRefused), Remedy::chooseClientFile};
  if (names(detail, {"invalid_grant"}))
    return {{localizedString("The sign-in took too long"),
             localizedString("Google does not take the browser’s answer any more. Try again.")}};
  return {{localizedString("Google refused the sign-in"),
           localizedString("Try again. If it is refused again, choose another client file.")}};
}

Answer answerForMachine(const SignInError& error) {
  switch (error.kind) {
    case Case::portTaken:
      return {{localizedString("Another program is in the way"),
               localizedString("It uses the place on this computer that the browser is to answer "
                               "to. Close it, then try again.")}};
    case Case::keyringLocked:
      return {wordsForKeyring(status::interactionNotAllowed)};
    case Case::keyringMissing:
      return {wordsForKeyring(status::notAvailable)};
    case Case::keyringFailed:
      return {wordsForKeyring(status::success)};
    case Case::stateNotWritable:
      return {{localizedString("Nothing can be stored"),
               localizedFormat("Make room in %s, or look at its permissions, then try again.",
                               {error.detail})}};
    default:
      return {{localizedString("The sign-in did not succeed"), error.what()}};
  }
}

Answer answerFor(const SignInError& error) {
  switch (error.kind) {
    case Case::noClientFile:
    case Case::unusableClientFile:
      return {wordsForMissingClientFile(), Remedy::chooseClientFile};
    case Case::noLoopbackAddress:
      return {{localizedString("The client file is of another type"),
               localizedString("It is for a web site. Choose the file of a client of the type "
                               "“Desktop app”.")},
              Remedy::chooseClientFile};
    case Case::denied:
      return {{localizedString("You did not allow it"),
               localizedString("Permission was denied in the browser. To see your figures, sign in "
                               "again and allow it.")}};
    case Case::refused:
      return answerForRefusal(error.detail);
    case Case::unreachable:
      return {wordsFor(FailureKind::noNetwork)};
    case Case::noRefreshToken:
      return {{localizedString("Google gave no lasting permission"),
               localizedString("Remove Velmora’s access in your Google Account, then try again.")},
              Remedy::openPage,
              accountAccessPage};
    case Case::noPermission:
      return {wordsForMissingPermission()};
    case Case::noAccount:
      return {wordsFor(FailureKind::noAccount), Remedy::chooseAccount};
    case Case::timeLimit:
      return {{localizedString("No answer came from the browser"),
               localizedString("Try again. If the browser shows an error of Google’s instead, the "
                               "client file may be the reason: choose another one.")}};
    default:
      return answerForMachine(error);
  }
}

}  // namespace

Failure describeSignInFailure(const SignInError& error) {
  const auto answer = answerFor(error);
  Failure failure;
  failure.title = answer.words.title;
  failure.advice = answer.words.advice;
  failure.details = error.detail;
  failure.description = error.what();
  failure.remedy = answer.remedy;
  failure.page = answer.page;
  return failure;
}

}  // namespace companion
