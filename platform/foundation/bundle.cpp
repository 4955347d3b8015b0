#include "platform/foundation/bundle.hpp"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/foundation/files.hpp"

namespace platform {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t largestResource = 1U << 20U;

std::optional<fs::path> homeFolder() {
  if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/') return home;
  const passwd* user = getpwuid(getuid());
  if (user == nullptr || user->pw_dir == nullptr) return std::nullopt;
  return user->pw_dir;
}

}  // namespace

fs::path resourceFolder() {
  std::error_code ignored;
  const auto program = fs::read_symlink("/proc/self/exe", ignored);
  return program.parent_path().parent_path() / "share" / mainBundleName;
}

std::optional<std::string> readResource(const std::string& fileName) {
  try {
    return readRegularFile(resourceFolder() / fileName, largestResource);
  } catch (const FileError&) {
    return std::nullopt;
  }
}

std::optional<fs::path> stateFolder() {
  const char* state = std::getenv("XDG_STATE_HOME");
  // A relative path is to be ignored.
  if (state != nullptr && *state == '/') return fs::path(state) / mainBundleName;
  const auto home = homeFolder();
  if (!home) return std::nullopt;
  return *home / ".local" / "state" / mainBundleName;
}

}  // namespace platform
