#pragma once

#include "companion/command_line.hpp"

namespace companion {

/// What the user gets to know when `velmora history` has done its work.
struct HistoryOutcome {
  std::string output;   ///< for standard output; empty when a file was written
  std::string warning;  ///< one line for standard error; may be empty
};

/// The days that a call asks for, printed or written into a file. When the service cannot be
/// asked, those at hand. Throws std::exception with one line when there are none, or when the file
/// cannot be written.
HistoryOutcome historyFromTerminal(const CommandLine& line);

}  // namespace companion
