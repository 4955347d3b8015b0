#pragma once

#include <filesystem>

namespace companion::window {

/// The user's own entry that starts the widget at each login (XDG Autostart):
/// `$XDG_CONFIG_HOME/autostart/velmora-desktop.desktop`.
std::filesystem::path autostartFile();

/// Whether the entry is there and not switched off by other means.
bool startsAtLogin();

/// Writes or removes the entry. Throws platform::FileError.
void setStartsAtLogin(bool starts, const std::filesystem::path& program);

}  // namespace companion::window
