#include "sandbox/grants.hpp"

#include <algorithm>

#include "platform/foundation/digest.hpp"

namespace sandbox {

namespace {

constexpr std::chrono::minutes codeLifetime{1};

}  // namespace

std::string Grants::issueCode(Consent consent) {
  const std::lock_guard lock(mutex_);
  auto code = "4/0" + platform::randomToken() + "+/";  // to be escaped
  codes_[code] = {std::move(consent), std::chrono::steady_clock::now(), std::nullopt};
  return code;
}

std::optional<Grant> Grants::redeem(const std::string& code, const std::string& redirectURI,
                                    const std::string& verifier) {
  const std::lock_guard lock(mutex_);
  const auto found = codes_.find(code);
  if (found == codes_.end()) return std::nullopt;
  auto& [consent, issued, usedFor] = found->second;
  if (usedFor) {
    remove(*usedFor);
    return std::nullopt;
  }
  const bool fits = std::chrono::steady_clock::now() - issued < codeLifetime &&
                    consent.redirectURI == redirectURI &&
                    consent.codeChallenge == platform::sha256Base64Url(verifier);
  if (!fits) return std::nullopt;
  Grant grant{"ya29." + platform::randomToken(), std::nullopt, consent.scope};
  // With characters that a form body must escape.
  if (consent.offline) grant.refreshToken = "1//0" + platform::randomToken() + "+/=";
  usedFor = grant.accessToken;
  grants_.push_back(grant);
  return grant;
}

std::optional<Grant> Grants::refresh(const std::string& refreshToken) {
  const std::lock_guard lock(mutex_);
  for (const auto& grant : grants_) {
    if (grant.refreshToken == refreshToken) return grant;
  }
  return std::nullopt;
}

bool Grants::revoke(const std::string& token) {
  const std::lock_guard lock(mutex_);
  return remove(token);
}

bool Grants::isAccessToken(const std::string& token) {
  const std::lock_guard lock(mutex_);
  return std::any_of(grants_.begin(), grants_.end(),
                     [&token](const Grant& grant) { return grant.accessToken == token; });
}

void Grants::clear() {
  const std::lock_guard lock(mutex_);
  grants_.clear();
}

bool Grants::remove(const std::string& token) {
  return std::erase_if(grants_, [&token](const Grant& grant) {
           return grant.accessToken == token || grant.refreshToken == token;
         }) > 0;
}

}  // namespace sandbox
