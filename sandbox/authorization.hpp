#pragma once

#include <map>
#include <optional>
#include <string>

#include "sandbox/grants.hpp"

namespace sandbox {

/// What the sandbox's user answers.
enum class ConsentMode { ask, allow, deny };

/// Reads "ask", "allow" or "deny".
std::optional<ConsentMode> consentModeFrom(const std::string& text);

using QueryParameters = std::multimap<std::string, std::string>;

/// A request at the authorization endpoint (RFC 6749, section 4.1.1), as far as it was understood.
struct AuthorizationRequest {
  Consent consent;
  std::string state;
  std::string redirectError;  ///< an error that the redirect carries (section 4.1.2.1)
  std::string pageError;      ///< one that the user alone sees: nobody is to be redirected
};

/// Checks a request of the sandbox's one client. The redirect address must be one of the client's
/// to the letter, but for the port of a loopback address (RFC 8252, section 7.3); PKCE with S256
/// is required.
AuthorizationRequest readAuthorizationRequest(const QueryParameters& parameters,
                                              const std::string& clientID);

/// The address that the browser is sent back to, with a code or else with an error.
std::string redirectAddress(const AuthorizationRequest& request,
                            const std::optional<std::string>& code, const std::string& error);

/// The page that asks the user; its buttons send the query on to /consent.
std::string consentPage(const std::string& query);

/// The page for a request that cannot be sent back.
std::string errorPage(const std::string& error);

}  // namespace sandbox
