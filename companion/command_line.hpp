#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace companion {

/// What a call asks for.
struct CommandLine {
  enum class Command { window, signIn, signOut, goals, client, status };

  Command command = Command::window;
  bool printAddress = false;
  std::chrono::seconds timeout{600};
  std::optional<double> daily;    ///< finite and above zero
  std::optional<double> monthly;  ///< finite and above zero
  std::optional<std::string> clientFile;
  bool check = false;
};

/// How a call that is only answered ends: the text for standard output or, with a status other
/// than 0, the one line for standard error.
struct EarlyExit {
  int status = 0;
  std::string text;
};

/// Reads a call.
std::optional<EarlyExit> parseCommandLine(int argumentCount, char** arguments, CommandLine& line);

}  // namespace companion
