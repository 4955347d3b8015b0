#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace sandbox {

/// What a user consented to, for the code that is given out for it.
struct Consent {
  std::string redirectURI;
  std::string codeChallenge;  ///< of method S256 (RFC 7636)
  std::string scope;
  bool offline = false;  ///< a refresh token is wanted
};

/// The tokens of one consent.
struct Grant {
  std::string accessToken;
  std::optional<std::string> refreshToken;
  std::string scope;
};

/// What the provider remembers of consents and tokens. Safe from any thread.
class Grants {
 public:
  /// With one grant that is there from the start.
  explicit Grants(Grant first) : grants_{std::move(first)} {}

  /// A code for one use within a minute.
  std::string issueCode(Consent consent);
  /// The tokens for a code. Absent when the code is unknown, used or too old, or when redirect
  /// address or verifier are not those of the consent; a code that is used twice takes its tokens
  /// along (RFC 6749, section 4.1.2).
  std::optional<Grant> redeem(const std::string& code, const std::string& redirectURI,
                              const std::string& verifier);
  /// The grant of a refresh token that was not withdrawn.
  std::optional<Grant> refresh(const std::string& refreshToken);
  /// Withdraws the grant of an access or refresh token; whether there was one (RFC 7009).
  bool revoke(const std::string& token);
  bool isAccessToken(const std::string& token);
  /// Withdraws every grant.
  void clear();

 private:
  struct Code {
    Consent consent;
    std::chrono::steady_clock::time_point issued;
    std::optional<std::string> usedFor;  ///< an access token
  };

  bool remove(const std::string& token);

  std::mutex mutex_;
  std::vector<Grant> grants_;
  std::map<std::string, Code> codes_;
};

}  // namespace sandbox
