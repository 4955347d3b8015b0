#include "companion/failure.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

#include "VelmoraWidget/AccessToken.hpp"
#include "VelmoraWidget/AdSenseClient.hpp"
#include "VelmoraWidget/SharedKeychain.hpp"
#include "VelmoraWidget/UnreadableAnswer.hpp"
#include "companion/client_file.hpp"
#include "companion/failure_words.hpp"
#include "companion/service_error.hpp"
#include "companion/sign_in_error.hpp"
#include "platform/foundation/http.hpp"
#include "platform/foundation/text.hpp"
#include "platform/keychain/keychain.hpp"

namespace companion {

namespace {

using Kind = FailureKind;

constexpr const char* enablingPage =
    "https://console.cloud.google.com/apis/library/adsense.googleapis.com";

constexpr std::pair<Kind, std::string_view> kindNames[] = {
    {Kind::signInEnded, "signInEnded"},
    {Kind::clientRefused, "clientRefused"},
    {Kind::serviceProblem, "serviceProblem"},
    {Kind::tooManyRequests, "tooManyRequests"},
    {Kind::apiNotEnabled, "apiNotEnabled"},
    {Kind::forbidden, "forbidden"},
    {Kind::foreignPage, "foreignPage"},
    {Kind::noNetwork, "noNetwork"},
    {Kind::noAnswer, "noAnswer"},
    {Kind::noAccount, "noAccount"},
    {Kind::keyring, "keyring"},
    {Kind::signedOut, "signedOut"}};

bool isAny(const std::string& text, std::initializer_list<std::string_view> any) {
  return std::find(any.begin(), any.end(), text) != any.end();
}

bool passes(Kind kind) {
  return kind == Kind::serviceProblem || kind == Kind::tooManyRequests || kind == Kind::noNetwork ||
         kind == Kind::noAnswer;
}

Remedy remedyFor(Kind kind) {
  switch (kind) {
    case Kind::signInEnded:
    case Kind::signedOut:
      return Remedy::signIn;
    case Kind::clientRefused:
      return Remedy::chooseClientFile;
    case Kind::apiNotEnabled:
      return Remedy::openPage;
    case Kind::forbidden:
    case Kind::noAccount:
      return Remedy::chooseAccount;
    default:
      return Remedy::tryAgain;
  }
}

Failure failureOf(Kind kind, const std::exception& error, const std::string& details) {
  const auto words = wordsFor(kind);
  return {kind,         words.title,  words.advice,    platform::oneLine(details),
          error.what(), passes(kind), remedyFor(kind), ""};
}

Failure say(Failure failure, const FailureWords& words) {
  failure.title = words.title;
  failure.advice = words.advice;
  return failure;
}

std::string httpText(std::int64_t status) { return "HTTP " + std::to_string(status); }

/// What an answer says by its status and by being none of the provider's documents.
Kind kindOfAnswer(std::int64_t status, bool isJson) {
  constexpr int networkAuthenticationRequired = 511;  // RFC 6585, section 6
  if (status == 429) return Kind::tooManyRequests;
  if (status == networkAuthenticationRequired) return Kind::foreignPage;
  if (status >= 500) return Kind::serviceProblem;
  return status < 400 && !isJson ? Kind::foreignPage : Kind::other;
}

Kind kindOf(const velmora::TokenRefusal& refusal) {
  // What the endpoint says while it is in trouble is not to be believed.
  const auto byStatus = kindOfAnswer(refusal.httpStatus, true);
  if (byStatus != Kind::other) return byStatus;
  if (refusal.code == "invalid_grant") return Kind::signInEnded;
  if (isAny(refusal.code, {"invalid_client", "deleted_client", "unauthorized_client"}))
    return Kind::clientRefused;
  if (isAny(refusal.code, {"internal_failure", "temporarily_unavailable", "server_error"}))
    return Kind::serviceProblem;
  return Kind::other;
}

/// Which file it is and what is wrong with it.
std::string clientFileProblem() {
  try {
    requireClient();
    return "";
  } catch (const SignInError& error) {
    return error.what();
  }
}

Failure describe(const velmora::OAuthError& error) {
  using Case = velmora::OAuthError::Case;
  if (error.kind == Case::noRefreshToken) return failureOf(Kind::signedOut, error, error.what());
  if (error.kind == Case::missingConfig)
    return say(failureOf(Kind::clientRefused, error, clientFileProblem()),
               wordsForMissingClientFile());
  const auto& [code, status] = error.refusal;
  return failureOf(kindOf(error.refusal), error,
                   httpText(status) + (code.empty() ? "" : ", " + code) + ": " + error.what());
}

Kind kindOf(const velmora::AdSenseError::Http& answer, const ServiceError& error) {
  constexpr int unauthorized = 401;
  constexpr int forbidden = 403;
  if (answer.statusCode == unauthorized) return Kind::signInEnded;
  if (answer.statusCode != forbidden) {
    const bool isJson = !error.status.empty() || !error.message.empty();
    return kindOfAnswer(answer.statusCode, isJson);
  }
  if (error.hasReason({"SERVICE_DISABLED", "accessNotConfigured"})) return Kind::apiNotEnabled;
  if (error.hasReason({"RATE_LIMIT_EXCEEDED", "rateLimitExceeded", "userRateLimitExceeded",
                       "dailyLimitExceeded", "quotaExceeded"}))
    return Kind::tooManyRequests;
  return Kind::forbidden;
}

Failure describe(const velmora::AdSenseError& error) {
  const auto* answer = std::get_if<velmora::AdSenseError::Http>(&error.kind);
  if (answer == nullptr) return failureOf(Kind::noAccount, error, error.what());
  const auto refusal = readServiceError(answer->body);
  auto details = httpText(answer->statusCode);
  if (!refusal.status.empty()) details += ", " + refusal.status;
  for (const auto& reason : refusal.reasons) details += ", " + reason;
  if (!refusal.message.empty()) details += ": " + refusal.message;
  auto failure = failureOf(kindOf(*answer, refusal), error, details);
  if (failure.kind == Kind::apiNotEnabled)
    failure.page = refusal.activationPage.empty() ? enablingPage : refusal.activationPage;
  if (refusal.hasReason({"ACCESS_TOKEN_SCOPE_INSUFFICIENT", "insufficientPermissions"}) &&
      failure.kind == Kind::forbidden) {
    failure.remedy = Remedy::signIn;
    return say(failure, wordsForMissingPermission());
  }
  return failure;
}

Kind kindOf(const platform::TransportError& error) {
  using Case = platform::TransportError::Case;
  switch (error.kind) {
    case Case::noNetwork:
      return Kind::noNetwork;
    case Case::noAnswer:
      return Kind::noAnswer;
    case Case::ledAway:
      return Kind::foreignPage;
    case Case::notPossible:
      break;
  }
  return Kind::other;
}

Failure describe(const velmora::KeychainError& error) {
  auto failure = say(failureOf(Kind::keyring, error, error.what()), wordsForKeyring(error.status));
  if (error.status == platform::keychain_status::interactionNotAllowed)
    failure.remedy = Remedy::unlockKeyring;
  return failure;
}

}  // namespace

Failure describeFailure(const std::exception& error) {
  if (const auto* oauth = dynamic_cast<const velmora::OAuthError*>(&error)) return describe(*oauth);
  if (const auto* service = dynamic_cast<const velmora::AdSenseError*>(&error))
    return describe(*service);
  if (const auto* keychain = dynamic_cast<const velmora::KeychainError*>(&error))
    return describe(*keychain);
  if (const auto* answer = dynamic_cast<const velmora::UnreadableAnswer*>(&error))
    return failureOf(kindOfAnswer(answer->httpStatus, answer->isJson), error,
                     httpText(answer->httpStatus) + ": " + error.what());
  if (const auto* transport = dynamic_cast<const platform::TransportError*>(&error))
    return failureOf(kindOf(*transport), error, error.what());
  return failureOf(Kind::other, error, error.what());
}

std::string nameOf(FailureKind kind) {
  const auto* found = std::find_if(std::begin(kindNames), std::end(kindNames),
                                   [kind](const auto& name) { return name.first == kind; });
  return found == std::end(kindNames) ? "other" : std::string(found->second);
}

FailureKind failureKindNamed(const std::string& text) {
  const auto* found = std::find_if(std::begin(kindNames), std::end(kindNames),
                                   [&text](const auto& name) { return name.second == text; });
  return found == std::end(kindNames) ? Kind::other : found->first;
}

}  // namespace companion
