#include "companion/running_host.hpp"

#include "platform/processes/process.hpp"

namespace companion {

void refreshRunningHost() {
  const auto program = platform::findProgram("velmora-desktop");
  if (!program.empty()) platform::startDetached({program, "--refresh"});
}

}  // namespace companion
