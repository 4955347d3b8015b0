#include "companion/history/update.hpp"

#include <algorithm>

#include "VelmoraWidget/AccessToken.hpp"
#include "VelmoraWidget/AccountResolution.hpp"
#include "VelmoraWidget/AdSenseBaseURL.hpp"
#include "companion/history/report.hpp"
#include "companion/history/store.hpp"
#include "platform/foundation/clock.hpp"
#include "platform/foundation/files.hpp"

namespace companion {

namespace {

using std::chrono::days;
using std::chrono::milliseconds;

constexpr double freshFor = 1800;  // seconds

/// An instant in the future, after the clock was set back, is not fresh.
bool isFresh(const History& history, platform::Instant now) {
  const double age = now.secondsSinceReferenceDate - history.updatedAt.secondsSinceReferenceDate;
  return age >= 0 && age < freshFor;
}

/// The days to ask for: those wanted, and those at hand once more, so that all that is kept is of
/// one report.
int daysToAsk(int wanted, const std::optional<History>& stored, Day today) {
  if (!stored) return wanted;
  const auto atHand = (today - stored->days.front().date).count() + 1;
  return static_cast<int>(std::clamp<std::int64_t>(atHand, wanted, mostDays));
}

/// Shares the time for one request out among several.
class TimeLeft {
 public:
  [[nodiscard]] milliseconds operator()() const {
    const auto left = std::chrono::duration_cast<milliseconds>(end_ - Clock::now());
    return std::max(left, milliseconds{1});
  }

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point end_ = Clock::now() + velmora::requestTimeout();
};

std::optional<History> upToTheLast(std::optional<History> stored, int count) {
  if (!stored) return std::nullopt;
  const auto last = stored->days.back().date;
  return lastDays(std::move(*stored), count, last);
}

bool keep(const History& history) {
  try {
    saveHistory(history);
    return true;
  } catch (const platform::FileError&) {
    return false;
  }
}

/// One report, which is kept. Throws what the requests throw, and as if nobody were signed in when
/// somebody signed out or in meanwhile: then the days are another user's.
HistoryAnswer fetchHistory(int count, Day today, platform::Instant now) {
  const TimeLeft timeLeft;
  const auto token = velmora::issueAccessToken(timeLeft());
  const auto check = [&token] { velmora::requireStoredToken(token.refreshToken); };
  velmora::AdSenseClient client{token.accessToken, velmora::adSenseBaseURL(), timeLeft()};
  const auto account = velmora::resolveAccountName(client, check);
  const auto first = today - days{count - 1};
  client.timeout = timeLeft();
  const auto report =
      client.generateReport(account, velmora::dailyReportItems(instantOf(first), instantOf(today)));
  HistoryAnswer answer{.history = historyFrom(report, account, first, today, now)};
  answer.isKept = keep(*answer.history);
  try {
    check();  // who signs out from now on forgets what was kept
  } catch (const std::exception&) {
    forgetHistory();
    throw;
  }
  return answer;
}

}  // namespace

std::optional<History> historyAtHand(int count) { return upToTheLast(loadHistory(), count); }

HistoryAnswer upToDateHistory(int count) {
  const auto now = platform::now();
  const auto today = dayOf(now);
  auto stored = loadHistory();
  if (stored && isFresh(*stored, now) && covers(*stored, count, today))
    return {.history = lastDays(std::move(*stored), count, today)};
  try {
    auto answer = fetchHistory(daysToAsk(count, stored, today), today, now);
    answer.history = lastDays(std::move(*answer.history), count, today);
    return answer;
  } catch (const std::exception&) {
    // Read once more: they may have been forgotten meanwhile.
    return {.history = historyAtHand(count), .problem = std::current_exception()};
  }
}

}  // namespace companion
