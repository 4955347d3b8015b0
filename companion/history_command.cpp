#include "companion/history_command.hpp"

#include <nlohmann/json.hpp>

#include <stdexcept>

#include "VelmoraWidget/CurrencyFormat.hpp"
#include "companion/failure.hpp"
#include "companion/history/chart_model.hpp"
#include "companion/history/history_file.hpp"
#include "companion/history/update.hpp"
#include "platform/foundation/files.hpp"
#include "platform/foundation/formatting.hpp"
#include "platform/foundation/json.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion {

using platform::localizedFormat;
using platform::localizedString;

namespace {

/// Why the service could not be asked.
std::string reasonOf(const std::exception_ptr& problem) {
  try {
    std::rethrow_exception(problem);
  } catch (const std::exception& error) {
    const auto failure = describeFailure(error);
    const auto text = localizedFormat("%s. %s", {failure.title, failure.advice});
    return failure.kind == FailureKind::other ? text + " (" + failure.details + ")" : text;
  }
}

History daysOf(const HistoryAnswer& answer) {
  if (answer.history) return *answer.history;
  if (answer.problem) throw std::runtime_error(reasonOf(answer.problem));
  throw std::runtime_error(
      localizedString("No days have been fetched yet. Without \"--offline\" they are."));
}

std::string warningOf(const HistoryAnswer& answer) {
  if (answer.problem) {
    const auto when = platform::dateTimeText(answer.history->updatedAt, velmora::displayLocale());
    return localizedFormat("These are the days of %s. %s", {when, reasonOf(answer.problem)});
  }
  return answer.isKept ? "" : localizedString("The days could not be kept for the next time.");
}

}  // namespace

HistoryOutcome historyFromTerminal(const CommandLine& line) {
  const auto kind = historyFile(line.output.value_or("")).value_or(HistoryFile::json);
  const int wanted = isPicture(kind) ? chartDays : line.days;
  const auto answer =
      line.isOffline ? HistoryAnswer{.history = historyAtHand(wanted)} : upToDateHistory(wanted);
  const auto history = daysOf(answer);
  HistoryOutcome outcome{.warning = warningOf(answer)};
  if (line.output) {
    platform::writeOutputFile(*line.output, historyBytes(history, line.days, kind, line.scale));
  } else {
    outcome.output = platform::printJson(jsonForm(history));
  }
  return outcome;
}

}  // namespace companion
