#include <iostream>

#include "companion/command_line.hpp"
#include "companion/commands.hpp"
#include "platform/foundation/bundle.hpp"
#include "platform/foundation/files.hpp"
#include "platform/foundation/library_logs.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/standard_streams.hpp"

int main(int argumentCount, char** arguments) {
  platform::occupyStandardStreams();
  platform::surviveFailedWrites();
  platform::silenceLibraryLogs("velmora");
  platform::loadStringTables();
  if (const auto folder = platform::userResourceFolder()) platform::removeLeftovers(*folder);
  companion::CommandLine line;
  if (const auto early = companion::parseCommandLine(argumentCount, arguments, line)) {
    if (early->status == 0) return platform::printLine(early->text) ? 0 : 1;
    std::cerr << "velmora: " << early->text << std::endl;
    return early->status;
  }
  return companion::runCommand(line);
}
