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

/// A base directory of the user's own (the XDG base directories), with the program's name.
std::optional<fs::path> userFolder(const char* variable, const char* standardName) {
  const char* folder = std::getenv(variable);
  // A relative path is to be ignored.
  if (folder != nullptr && *folder == '/') return fs::path(folder) / mainBundleName;
  const auto home = homeFolder();
  if (!home) return std::nullopt;
  return *home / ".local" / standardName / mainBundleName;
}

}  // namespace

fs::path resourceFolder() {
  std::error_code ignored;
  const auto program = fs::read_symlink("/proc/self/exe", ignored);
  const auto prefix = program.parent_path().parent_path();
  const auto folder = fs::path("share") / mainBundleName;
  // A program under libexec stands one folder deeper.
  if (!fs::exists(prefix / folder, ignored) && fs::exists(prefix.parent_path() / folder, ignored))
    return prefix.parent_path() / folder;
  return prefix / folder;
}

std::optional<fs::path> userResourceFolder() { return userFolder("XDG_DATA_HOME", "share"); }

std::vector<fs::path> resourceFolders() {
  std::vector<fs::path> folders;
  if (const auto own = userResourceFolder()) folders.push_back(*own);
  folders.push_back(resourceFolder());
  return folders;
}

std::optional<Resource> findResource(const std::string& fileName) {
  for (const auto& folder : resourceFolders()) {
    try {
      return Resource{folder / fileName, readRegularFile(folder / fileName, largestResource)};
    } catch (const FileError&) {
      continue;  // the next folder stands in
    }
  }
  return std::nullopt;
}

std::optional<std::string> readResource(const std::string& fileName) {
  auto resource = findResource(fileName);
  return resource ? std::optional(std::move(resource->bytes)) : std::nullopt;
}

std::optional<fs::path> stateFolder() { return userFolder("XDG_STATE_HOME", "state"); }

}  // namespace platform
