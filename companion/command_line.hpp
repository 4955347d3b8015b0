#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace companion {

/// What a call asks for.
struct CommandLine {
  enum class Command { window, signIn, signOut, goals, client, status, history, news };

  Command command = Command::window;
  bool printAddress = false;
  std::chrono::seconds timeout{600};
  std::optional<double> daily;    ///< finite and above zero
  std::optional<double> monthly;  ///< finite and above zero
  std::optional<std::string> clientFile;
  bool check = false;
  int days = 35;
  bool isOffline = false;
  std::optional<std::string> output;  ///< a file with an ending that is known
  double scale = 1;                   ///< device pixels per point, above 0 to 8
  bool peek = false;
  std::vector<std::string> newsOn;   ///< kinds of news
  std::vector<std::string> newsOff;  ///< others
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
