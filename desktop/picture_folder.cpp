#include "desktop/picture_folder.hpp"

#include <glib.h>
#include <sys/statvfs.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace desktop {

namespace fs = std::filesystem;

namespace {

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
  const std::array<const char*, 2> parents{std::getenv("XDG_RUNTIME_DIR"), g_get_tmp_dir()};
  for (const char* parent : parents) {
    if (parent == nullptr || *parent != '/') continue;
    auto problem = lackOfRoom(parent, bytes);
    auto name = (fs::path(parent) / "velmora-desktop-XXXXXX").string();
    if (problem.empty() && mkdtemp(name.data()) != nullptr) {
      path_ = name;
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

}  // namespace desktop
