#include "desktop/picture_folder.hpp"

#include <fcntl.h>
#include <glib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <string_view>
#include <system_error>

namespace desktop {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view namePattern = "velmora-desktop-XXXXXX";
constexpr std::size_t madeUp = 6;  // characters at its end

std::array<const char*, 2> parentFolders() {
  return {std::getenv("XDG_RUNTIME_DIR"), g_get_tmp_dir()};
}

bool isOurs(const std::string& name) {
  return name.size() == namePattern.size() &&
         name.starts_with(namePattern.substr(0, namePattern.size() - madeUp));
}

bool isUsable(const char* parent) { return parent != nullptr && *parent == '/'; }

/// The folder, locked; none when somebody uses it, or when it is not a folder of this user's.
platform::Descriptor locked(const fs::path& folder) {
  platform::Descriptor descriptor(
      open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  struct stat status{};
  const bool own = descriptor && fstat(descriptor.get(), &status) == 0 && status.st_uid == getuid();
  if (!own || flock(descriptor.get(), LOCK_EX | LOCK_NB) != 0) return platform::Descriptor();
  return descriptor;
}

/// Why a folder has no room for that many bytes; empty when it has.
std::string lackOfRoom(const fs::path& folder, std::uintmax_t bytes) {
  struct statvfs system{};
  if (statvfs(folder.c_str(), &system) != 0) return std::generic_category().message(errno);
  const bool limited = system.f_blocks != 0;
  const bool full = limited && std::uintmax_t{system.f_bavail} * system.f_frsize < bytes;
  return full ? std::generic_category().message(ENOSPC) : "";
}

}  // namespace

PictureFolder::PictureFolder(std::uintmax_t bytes) {
  std::string problems;
  for (const char* parent : parentFolders()) {
    if (!isUsable(parent)) continue;
    auto problem = lackOfRoom(parent, bytes);
    auto name = (fs::path(parent) / namePattern).string();
    if (problem.empty() && mkdtemp(name.data()) != nullptr) {
      path_ = name;
      lock_ = locked(path_);
      return;
    }
    if (problem.empty()) problem = std::generic_category().message(errno);
    problems += (problems.empty() ? "" : "; ") + std::string(parent) + ": " + problem;
  }
  throw std::runtime_error("there is no folder for its picture (" + problems + ")");
}

PictureFolder::~PictureFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

void removeLeftPictureFolders() {
  for (const char* parent : parentFolders()) {
    std::error_code error;
    if (!isUsable(parent)) continue;
    for (const auto& entry : fs::directory_iterator(parent, error)) {
      if (isOurs(entry.path().filename().string()) && locked(entry.path()))
        fs::remove_all(entry.path(), error);
    }
  }
}

}  // namespace desktop
