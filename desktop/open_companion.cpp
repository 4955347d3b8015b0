#include "desktop/open_companion.hpp"

#include "desktop/complain.hpp"
#include "platform/processes/process.hpp"

namespace desktop {

void openCompanion(const std::string& startup) {
  const auto program = platform::findProgram("velmora");
  if (program.empty() || !platform::startDetached({program}, startup))
    complain("velmora, which this opens, is not installed");
}

}  // namespace desktop
