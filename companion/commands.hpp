#pragma once

#include "companion/command_line.hpp"

namespace companion {

/// Does what a call asks for and returns its exit status: 0 when it was done, 1 when it could not,
/// with one line on standard error.
int runCommand(const CommandLine& line);

}  // namespace companion
