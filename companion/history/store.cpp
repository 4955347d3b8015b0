#include "companion/history/store.hpp"

#include <nlohmann/json.hpp>

#include <filesystem>

#include "VelmoraWidget/AccountResolution.hpp"
#include "platform/foundation/bundle.hpp"
#include "platform/foundation/files.hpp"
#include "platform/foundation/user_defaults.hpp"

namespace companion {

namespace fs = std::filesystem;
using platform::JsonDecoder;

namespace {

constexpr std::size_t largestFile = 1U << 20U;  // two years take a tenth of it

std::optional<fs::path> historyFile() {
  const auto folder = platform::stateFolder();
  return folder ? std::optional(*folder / "history.json") : std::nullopt;
}

[[noreturn]] void failAsDamaged() { throw platform::JsonDecodingError("days: not whole"); }

HistoryDay decodeDay(const JsonDecoder& object) {
  const auto date = dayFromText(object.at("date").string());
  if (!date) failAsDamaged();
  HistoryDay day{*date, {}};
  for (const auto& [key, column, field] : dayFields) day.figures.*field = object.at(key).number();
  return day;
}

History decodeHistory(const JsonDecoder& object) {
  History history{object.at("account").string(),
                  object.at("currency").string(),
                  {object.at("updatedAt").number()},
                  {}};
  for (const auto& element : object.at("days").array()) {
    const auto day = decodeDay(element);
    const bool follows =
        history.days.empty() || day.date == history.days.back().date + std::chrono::days{1};
    if (!follows) failAsDamaged();
    history.days.push_back(day);
  }
  if (history.days.empty()) failAsDamaged();
  return history;
}

/// An account that is not known any more was forgotten, and its days are to be.
bool isForeign(const History& history) {
  const auto account = platform::UserDefaults::standard().string(velmora::accountCacheKey);
  return account != history.account;
}

}  // namespace

std::optional<History> loadHistory() {
  const auto file = historyFile();
  if (!file) return std::nullopt;
  try {
    auto history = decodeHistory(JsonDecoder(platform::readRegularFile(*file, largestFile)));
    return isForeign(history) ? std::nullopt : std::optional(std::move(history));
  } catch (const std::runtime_error&) {  // FileError and JsonDecodingError
    return std::nullopt;
  }
}

void saveHistory(const History& history) {
  const auto file = historyFile();
  if (!file) throw platform::FileError(platform::FileError::Case::notWritable, "there is no home");
  auto json = jsonForm(history);
  json["updatedAt"] = platform::jsonNumber(history.updatedAt.secondsSinceReferenceDate);
  // A currency or an account that is no UTF-8 is repaired on the way.
  platform::writePrivateFile(*file, platform::printJson(json));
}

bool forgetHistory() {
  const auto file = historyFile();
  if (!file) return true;
  std::error_code failure;
  fs::remove(*file, failure);
  return !fs::exists(fs::symlink_status(*file, failure));
}

}  // namespace companion
