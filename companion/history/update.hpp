#pragma once

#include <exception>
#include <optional>

#include "companion/history/history.hpp"

namespace companion {

/// The days that could be had.
struct HistoryAnswer {
  std::optional<History> history;  ///< absent when there are no days at all
  std::exception_ptr problem;      ///< why the service could not be asked; none when all went well
  bool isKept = true;              ///< false when what was fetched could not be stored
};

/// The last days up to today by the clock. The service is asked once, unless all of them were
/// fetched within the last half hour. When it cannot be asked, the days at hand are the answer.
/// Waits for the provider, but not for ever.
HistoryAnswer upToDateHistory(int days);

/// The last days that were fetched; asks nobody.
std::optional<History> historyAtHand(int days);

}  // namespace companion
