#include "VelmoraWidget/SnapshotFetch.hpp"

#include <algorithm>

#include "VelmoraWidget/AccessToken.hpp"
#include "VelmoraWidget/AccountResolution.hpp"
#include "VelmoraWidget/AdSenseBaseURL.hpp"
#include "VelmoraWidget/AdSenseClient.hpp"
#include "VelmoraWidget/Payments.hpp"
#include "VelmoraWidget/SnapshotCache.hpp"
#include "platform/foundation/clock.hpp"
#include "platform/foundation/text.hpp"

namespace velmora {

namespace {

constexpr int reportDays = 35;
constexpr std::size_t yearAndMonth = 7;  // of "yyyy-MM-dd"

PerfValues perfValues(const DayMetrics& day) {
  return {day.pageViews, day.rpm, day.impressions, day.clicks, day.cpc, day.ctr};
}

double monthEarnings(const DayTable& days, const std::string& latestKey) {
  std::string month;
  const auto characters = platform::graphemeClusters(latestKey);
  for (std::size_t i = 0; i < std::min(yearAndMonth, characters.size()); ++i)
    month += characters[i];
  double sum = 0;
  for (const auto& [key, day] : days) {
    if (key.starts_with(month)) sum += day.earnings;
  }
  return sum;
}

}  // namespace

platform::Instant anchorDay(const DayTable& days, platform::Instant now) {
  return makeDayFormatter().date(days.rbegin()->first).value_or(now);
}

VelmoraSnapshot periodFigures(const DayTable& days, platform::Instant anchor) {
  const auto formatter = makeDayFormatter();
  const auto daysBack = [&](int count) {
    const auto found = days.find(formatter.text(reportCalendar.addingDays(anchor, -count)));
    return found == days.end() ? DayMetrics{} : found->second;
  };
  VelmoraSnapshot snapshot;
  const auto& [latestKey, latestDay] = *days.rbegin();
  const auto yesterday = daysBack(1);
  const auto weekBefore = daysBack(8);
  snapshot.today = latestDay.earnings;
  snapshot.yesterday = yesterday.earnings;
  snapshot.yesterdayPrevWeek = weekBefore.earnings;
  snapshot.perfYesterday = perfValues(yesterday);
  snapshot.perfPrevWeek = perfValues(weekBefore);
  for (int count = 1; count <= 7; ++count) snapshot.last7 += daysBack(count).earnings;
  for (int count = 8; count <= 14; ++count) snapshot.prev7 += daysBack(count).earnings;
  snapshot.monthToDate = monthEarnings(days, latestKey);
  return snapshot;
}

VelmoraSnapshot fetchSnapshot() {
  const auto token = issueAccessToken();
  // The user may have signed out meanwhile, or somebody else in: what is stored now would be shown
  // to them.
  const auto check = [&token] { requireStoredToken(token.refreshToken); };
  const AdSenseClient client{token.accessToken, adSenseBaseURL()};
  const auto accountName = resolveAccountName(client, check);

  const auto now = platform::now();
  const auto firstDay = reportCalendar.addingDays(now, -(reportDays - 1));
  const auto report = client.generateReport(accountName, dailyReportItems(firstDay, now));
  const auto days = parseReportRows(report.headers, report.rows);

  VelmoraSnapshot snapshot;
  const auto currency = reportCurrency(report.headers);
  if (!days.empty()) {
    const auto anchor = anchorDay(days, now);
    snapshot = periodFigures(days, anchor);
    snapshot.monthLastYear = fetchMonthLastYear(client, accountName, anchor);
    auto payments = fetchPaymentsSummary(client, accountName, currency);
    snapshot.balance = std::move(payments.balance);
    snapshot.lastPaymentAmount = std::move(payments.lastPaymentAmount);
    snapshot.lastPaymentDateLabel = std::move(payments.lastPaymentDateLabel);
  }
  snapshot.currency = currency;
  snapshot.updatedAt = now;
  saveCachedSnapshot(snapshot, check);
  return snapshot;
}

}  // namespace velmora
