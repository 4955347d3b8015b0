#pragma once

#include <map>
#include <optional>
#include <string>

namespace sandbox {

/// The requests of one refresh, those for what the service has to tell, and those of a sign-in and
/// a sign-out.
enum class Step {
  token,
  accounts,
  report,
  lastYear,
  payments,
  alerts,
  policy,
  authorization,
  exchange,
  revoke
};

/// What a step does instead of its work.
struct Fault {
  enum class Kind {
    status,
    drop,
    truncate,
    garbage,
    html,
    empty,
    slow,
    redirectLoop,
    huge,
    oauthError,      ///< at the token endpoint alone
    serviceDisabled  ///< the API is not enabled for the client's project
  };

  Kind kind = Kind::status;
  int status = 0;    ///< of the kinds `status`, `html` (0 means 200) and `oauthError`
  std::string code;  ///< of kind `oauthError`: "invalid_grant" and others
};

/// Reads "STEP=KIND" ("payments=503", "token=drop", "token=invalid_client", "report=html-502");
/// absent when it is none.
std::optional<std::pair<Step, Fault>> parseFault(const std::string& text);

/// Reads a kind alone, but for an OAuth error.
std::optional<Fault> parseFaultKind(const std::string& text);

/// All steps by their names.
const std::map<std::string, Step>& stepNames();

}  // namespace sandbox
