#pragma once

#include <nlohmann/json.hpp>

#include <string>

#include "platform/foundation/json.hpp"
#include "sandbox/grants.hpp"

namespace sandbox {

/// The one client that the provider knows.
struct ClientCredentials {
  std::string id;
  std::string secret;
};

struct Answer {
  int status = 200;
  platform::Json document;
};

/// Whether the body is an exchange of a code, not a refresh.
bool isCodeExchange(const std::string& body);

/// Answers a form at the token endpoint: the refresh_token and authorization_code grants
/// (RFC 6749, sections 6 and 4.1.3). The client's credentials may stand in the form or in the
/// Authorization header.
Answer answerTokenRequest(const std::string& contentType, const std::string& authorization,
                          const std::string& body, Grants& grants, const ClientCredentials& client);

/// Answers a form at the revocation endpoint (RFC 7009), where the provider calls an unknown token
/// an error.
Answer answerRevocation(const std::string& contentType, const std::string& body, Grants& grants);

/// `{"error","error_description"}` (RFC 6749, section 5.2).
platform::Json tokenError(const std::string& error, const std::string& description);

}  // namespace sandbox
