#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// The program's own name, under which its resources, its state and its string tables live.
/// Declared here, defined once by the program.
extern const std::string_view mainBundleName;

/// The folder of the program's read-only resources: `share/NAME` beside the `bin` that holds the
/// running program, so that it works from a build tree and from any installation prefix.
std::filesystem::path resourceFolder();

/// A resource's bytes; absent when there is no such file or it cannot be read.
std::optional<std::string> readResource(const std::string& fileName);

/// The folder for what the program remembers: `$XDG_STATE_HOME/NAME`, `~/.local/state/NAME`
/// without it (the XDG base directories). Absent when there is no home.
std::optional<std::filesystem::path> stateFolder();

}  // namespace platform
