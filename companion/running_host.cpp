#include "companion/running_host.hpp"

#include <glib.h>
#include <unistd.h>

#include <filesystem>

#include "platform/foundation/raii.hpp"

namespace companion {

namespace fs = std::filesystem;

std::string findProgram(const std::string& name) {
  std::error_code ignored;
  const auto folder = fs::read_symlink("/proc/self/exe", ignored).parent_path();
  // From the folder of the terminal's programs, and from libexec/velmora beside it.
  for (const auto& file :
       {folder / name, folder / "../libexec/velmora" / name, folder / "../../bin" / name}) {
    const auto candidate = file.lexically_normal();
    if (fs::is_regular_file(candidate, ignored) && ::access(candidate.c_str(), X_OK) == 0)
      return candidate;
  }
  const platform::Owned<gchar, g_free> found(g_find_program_in_path(name.c_str()));
  return found ? found.get() : "";
}

void refreshRunningHost() {
  auto program = findProgram("velmora-desktop");
  if (program.empty()) return;
  std::string option = "--refresh";
  char* arguments[] = {program.data(), option.data(), nullptr};
  const auto flags = static_cast<GSpawnFlags>(G_SPAWN_STDOUT_TO_DEV_NULL |
                                              G_SPAWN_STDERR_TO_DEV_NULL | G_SPAWN_CLOEXEC_PIPES);
  g_spawn_async(nullptr, arguments, nullptr, flags, nullptr, nullptr, nullptr, nullptr);
}

}  // namespace companion
