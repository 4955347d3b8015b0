#pragma once

#include <string>
#include <vector>

namespace tests {

/// What a finished program left.
struct ProgramRun {
  int status = -1;  ///< exit status, or 128 and the signal that ended it
  std::string output;
  std::string errors;
};

/// Runs a program to its end, or for a minute (status 124). An argument list for the shell:
/// `{"/bin/sh", "-c", "..."}`.
ProgramRun run(const std::vector<std::string>& arguments);

}  // namespace tests
