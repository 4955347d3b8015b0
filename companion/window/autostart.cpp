#include "companion/window/autostart.hpp"

#include <glib.h>

#include "companion/window/widgets.hpp"
#include "platform/foundation/files.hpp"

namespace companion::window {

namespace fs = std::filesystem;

namespace {

using KeyFile = platform::Owned<GKeyFile, g_key_file_unref>;

constexpr std::size_t largestFile = 64U << 10U;

bool flag(GKeyFile* entry, const char* key, bool fallback) {
  GError* error = nullptr;
  const bool value = g_key_file_get_boolean(entry, G_KEY_FILE_DESKTOP_GROUP, key, &error) != FALSE;
  if (error == nullptr) return value;
  g_error_free(error);
  return fallback;
}

/// A program's file as the Exec key wants it (Desktop Entry, "The Exec key").
std::string quoted(const std::string& file) {
  std::string result = "\"";
  for (const char character : file) {
    if (std::string_view("\"`$\\").find(character) != std::string_view::npos) result += '\\';
    result += character;
    if (character == '%') result += '%';
  }
  return result + '"';
}

}  // namespace

fs::path autostartFile() {
  return fs::path(g_get_user_config_dir()) / "autostart" / "velmora-desktop.desktop";
}

bool startsAtLogin() {
  std::string text;
  try {
    text = platform::readRegularFile(autostartFile(), largestFile);
  } catch (const platform::FileError&) {
    return false;
  }
  const KeyFile entry(g_key_file_new());
  if (!g_key_file_load_from_data(entry.get(), text.data(), text.size(), G_KEY_FILE_NONE, nullptr))
    return false;
  return !flag(entry.get(), "Hidden", false) &&
         flag(entry.get(), "X-GNOME-Autostart-enabled", true);
}

void setStartsAtLogin(bool starts, const fs::path& program) {
  if (!starts) {
    std::error_code error;
    fs::remove(autostartFile(), error);
    if (error) throw platform::FileError(platform::FileError::Case::notWritable, error.message());
    return;
  }
  const KeyFile entry(g_key_file_new());
  const auto set = [&entry](const char* key, const std::string& value) {
    g_key_file_set_string(entry.get(), G_KEY_FILE_DESKTOP_GROUP, key, value.c_str());
  };
  set("Type", "Application");
  set("Name", "Velmora");
  set("Exec", quoted(program));
  set("TryExec", program);
  set("Icon", "com.brenvik.velmora");
  set("NoDisplay", "true");
  const GText text(g_key_file_to_data(entry.get(), nullptr, nullptr));
  platform::writePrivateFile(autostartFile(), text.get());
}

}  // namespace companion::window
