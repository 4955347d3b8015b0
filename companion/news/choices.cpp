#include "companion/news/choices.hpp"

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>

#include "companion/news/file_lock.hpp"
#include "platform/foundation/files.hpp"
#include "platform/foundation/json.hpp"

namespace companion::news {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t largestFile = 64U << 10U;

/// `$XDG_CONFIG_HOME/velmora/news.json`, `~/.config` without it; empty when there is no home.
fs::path choicesFile() {
  const auto* config = std::getenv("XDG_CONFIG_HOME");
  const auto* home = std::getenv("HOME");
  fs::path base = config != nullptr ? config : "";
  if (!base.is_absolute() && home != nullptr) base = fs::path(home) / ".config";
  return base.is_absolute() ? base / "velmora" / "news.json" : fs::path();
}

Choices decode(const nlohmann::json& document) {
  Choices choices;
  if (!document.is_object() || !document.contains("kinds")) return choices;
  for (const auto& [kind, choice] : document["kinds"].items())
    if (choice.is_boolean()) choices[kind] = choice.get<bool>();
  return choices;
}

}  // namespace

bool isOn(const Choices& choices, const std::string& kind) {
  const auto found = choices.find(kind);
  return found == choices.end() || found->second;
}

Choices loadChoices() {
  try {
    const auto bytes = platform::readRegularFile(choicesFile(), largestFile);
    return decode(nlohmann::json::parse(bytes, nullptr, false));
  } catch (const platform::FileError&) {
    return {};
  }
}

void storeChoices(const Choices& changed) {
  const auto file = choicesFile();
  if (file.empty())
    throw platform::FileError(platform::FileError::Case::notWritable, "there is no home folder");
  platform::makePrivateFolders(file.parent_path());
  const FileLock lock(file.parent_path());
  auto choices = loadChoices();
  for (const auto& [kind, choice] : changed) choices[kind] = choice;
  platform::writePrivateFile(file, platform::encodeJson({{"kinds", choices}}));
}

}  // namespace companion::news
