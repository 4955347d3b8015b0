#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// The program's own name, under which its resources, its state and its string tables live.
/// Declared here, defined once by the program.
extern const std::string_view mainBundleName;

/// The folder of the program's read-only resources: `share/NAME` beside the `bin` that holds the
/// running program (or beside the `libexec` for one in a folder there), so that it works from a
/// build tree and from any installation prefix.
std::filesystem::path resourceFolder();

/// The folder of the user's own resources, which win over the program's: `$XDG_DATA_HOME/NAME`,
/// `~/.local/share/NAME` without it. Absent when there is no home.
std::optional<std::filesystem::path> userResourceFolder();

/// Where resources are looked for, in order.
std::vector<std::filesystem::path> resourceFolders();

struct Resource {
  std::filesystem::path file;
  std::string bytes;
};

/// The resource of that name in the first folder where it can be read; absent without one.
std::optional<Resource> findResource(const std::string& fileName);

/// Its bytes alone.
std::optional<std::string> readResource(const std::string& fileName);

/// The folder for what the program remembers: `$XDG_STATE_HOME/NAME`, `~/.local/state/NAME`
/// without it (the XDG base directories). Absent when there is no home.
std::optional<std::filesystem::path> stateFolder();

}  // namespace platform
