#pragma once

#include <string>

#include "companion/command_line.hpp"

namespace companion {

/// Signs a user in from a terminal: opens the browser, or prints the address where that is asked
/// for or no browser can be opened, and waits. Returns the line that says who is signed in. Throws
/// SignInError.
std::string signInFromTerminal(const CommandLine& line);

}  // namespace companion
