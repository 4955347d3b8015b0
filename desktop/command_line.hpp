#pragma once

#include <optional>
#include <string>
#include <vector>

#include "desktop/placement.hpp"

namespace desktop {

/// What a call asks for; absent means unchanged.
struct CommandLine {
  std::optional<std::string> widget;  ///< absolute
  std::optional<platform::WidgetFamily> family;
  std::optional<Corner> corner;
  std::optional<int> margin;
  std::optional<std::string> monitor;
  std::optional<bool> hidesAmounts;
  bool refresh = false;
  bool quit = false;
};

/// How a call that is only answered ends: the text for standard output or, with a status other
/// than 0, the one line for standard error.
struct EarlyExit {
  int status = 0;
  std::string text;
};

/// Reads a call. Relative files are taken from `folder`.
std::optional<EarlyExit> parseCommandLine(const std::vector<std::string>& arguments,
                                          const std::string& folder, CommandLine& line);

/// Whether a call only wants to reach a host that runs.
bool wantsRunningHost(const CommandLine& line);

/// The choices after a call.
Placement applied(const CommandLine& line, Placement placement);

}  // namespace desktop
