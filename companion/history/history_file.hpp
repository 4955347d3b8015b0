#pragma once

#include <optional>
#include <string>

#include "companion/history/history.hpp"

namespace companion {

/// The kinds of files that days can be written into.
enum class HistoryFile { csv, json, png, svg, pdf };

/// By a file name's ending; absent for any other.
std::optional<HistoryFile> historyFile(const std::string& fileName);

/// Whether it is a picture, which needs chartDays.
bool isPicture(HistoryFile kind);

/// The last days as a file's bytes. A picture is the chart of these days: up to five weeks day by
/// day, more by month. Throws std::runtime_error.
std::string historyBytes(const History& history, int days, HistoryFile kind, double scale);

}  // namespace companion
