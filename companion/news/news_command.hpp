#pragma once

#include "companion/command_line.hpp"

namespace companion::news {

/// `velmora news`: prints what is news, or changes what is told and prints the choices. Returns
/// whether it could be printed. Throws SignInError or platform::FileError.
bool runNewsCommand(const CommandLine& line);

}  // namespace companion::news
