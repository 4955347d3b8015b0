#pragma once

#include <map>
#include <optional>
#include <string>

namespace sandbox {

/// The requests of one refresh, and those of a sign-in and a sign-out.
enum class Step { token, accounts, report, lastYear, payments, authorization, exchange, revoke };

/// What a step does instead of its work.
struct Fault {
  enum class Kind { status, drop, truncate, garbage, html, empty, slow, redirectLoop, huge };

  Kind kind = Kind::status;
  int status = 0;  ///< of kind `status`
};

/// Reads "STEP=KIND" ("payments=503", "token=drop"); absent when it is none.
std::optional<std::pair<Step, Fault>> parseFault(const std::string& text);

/// Reads a kind alone.
std::optional<Fault> parseFaultKind(const std::string& text);

/// All steps by their names.
const std::map<std::string, Step>& stepNames();

}  // namespace sandbox
