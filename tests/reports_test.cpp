#include "VelmoraWidget/Reports.hpp"

#include <gmock/gmock.h>

#include <cmath>

#include "VelmoraWidget/Payments.hpp"
#include "VelmoraWidget/SnapshotFetch.hpp"
#include "platform/foundation/json.hpp"
#include "tests/support/environment.hpp"
#include "tests/support/held_clock.hpp"

using namespace velmora;
using platform::QueryItem;
using tests::instant;

namespace {

std::string joined(const std::vector<QueryItem>& items) {
  std::string text;
  for (const auto& item : items) text += (text.empty() ? "" : "&") + item.name + "=" + item.value;
  return text;
}

DayTable tableOf(const std::string& report) {
  const auto response = decodeReportResponse(report);
  return parseReportRows(response.headers, response.rows);
}

std::string summaryOf(const std::string& payments) {
  const auto summary = summarize(decodePaymentsResponse(payments), "EUR");
  const auto text = [](const std::optional<std::string>& field) { return field.value_or("none"); };
  return text(summary.balance) + " | " + text(summary.lastPaymentAmount) + " | " +
         text(summary.lastPaymentDateLabel);
}

std::string payment(const char* name, const char* date, const char* amount) {
  return std::string(R"({"name":"accounts/pub-1/payments/)") + name + "\"" +
         (date == nullptr ? "" : std::string(R"(,"date":)") + date) +
         (amount == nullptr ? "" : std::string(R"(,"amount":")") + amount + "\"") + "}";
}

std::string listOf(const std::vector<std::string>& payments) {
  std::string list;
  for (const auto& one : payments) list += (list.empty() ? "" : ",") + one;
  return R"({"payments":[)" + list + "]}";
}

}  // namespace

TEST(ReportRequests, areExact) {
  const auto now = instant("2026-05-21T23:59:59");
  EXPECT_EQ(joined(dailyReportItems(reportCalendar.addingDays(now, -34), now)),
            "dateRange=CUSTOM&dimensions=DATE&metrics=ESTIMATED_EARNINGS&metrics=PAGE_VIEWS&"
            "metrics=PAGE_VIEWS_RPM&metrics=IMPRESSIONS&metrics=CLICKS&metrics=COST_PER_CLICK&"
            "metrics=PAGE_VIEWS_CTR&startDate.year=2026&startDate.month=4&startDate.day=17&"
            "endDate.year=2026&endDate.month=5&endDate.day=21");
  const auto lastYear = [](const char* day) { return joined(monthLastYearItems(instant(day))); };
  EXPECT_EQ(lastYear("2024-02-29T00:00:00"),
            "dateRange=CUSTOM&metrics=ESTIMATED_EARNINGS&startDate.year=2023&startDate.month=2&"
            "startDate.day=1&endDate.year=2023&endDate.month=2&endDate.day=28");
  EXPECT_THAT(lastYear("2026-03-31T00:00:00"), testing::EndsWith("endDate.month=3&endDate.day=31"));
  EXPECT_EQ(joined(monthLastYearItems({1e300})), "");
  EXPECT_EQ(joined(dateQueryItems("d", {NAN})), "d.year=0&d.month=0&d.day=0");
}

TEST(ReportRows, areReadByName) {
  const auto table = tableOf(R"({"headers":[{"name":"PAGE_VIEWS_CTR"},{},{"name":"DATE"},
      {"name":"ESTIMATED_EARNINGS"},{"name":"CLICKS"}],"rows":[
      {"cells":[{"value":"0.045"},{"value":"9"},{"value":"2026-05-20"},{"value":"12.34"},{}]},
      {"cells":[{"value":"1"},{"value":"9"}]},
      {"cells":[{"value":"1"},{"value":"9"},{},{"value":"5"}]},
      {"cells":[{},{},{"value":"2026-05-19"}]},
      {"cells":[{},{},{"value":"2026-05-18"},{"value":"1"},{"value":"1,5"}]},
      {"cells":[{},{},{"value":"2026-05-18"},{"value":" 7"},{"value":"0x10"}]}]})");
  ASSERT_EQ(table.size(), 3U);
  EXPECT_EQ(table.at("2026-05-20"), (DayMetrics{.earnings = 12.34, .ctr = 4.5}));
  EXPECT_EQ(table.at("2026-05-19"), DayMetrics{});
  EXPECT_EQ(table.at("2026-05-18"), (DayMetrics{.clicks = 16})) << "the later row wins";
  for (const char* report :
       {"{}", R"({"headers":[],"rows":[{"cells":[]}]})",
        R"({"headers":[{"name":"CLICKS"}],"rows":[{"cells":[{"value":"1"}]}]})"})
    EXPECT_TRUE(tableOf(report).empty()) << report;
  EXPECT_THROW(tableOf(R"({"rows":[{}]})"), platform::JsonDecodingError);
}

TEST(ReportTotals, preferTheFirstTotal) {
  const auto total = [](const char* report) { return reportTotal(decodeReportResponse(report)); };
  EXPECT_EQ(
      total(R"({"totals":{"cells":[{"value":"123.45"}]},"rows":[{"cells":[{"value":"9"}]}]})"),
      123.45);
  const std::string rows =
      R"("rows":[{"cells":[{"value":"x"},{"value":"10"}]},{"cells":[{"value":"5.5"}]},{"cells":[{}]},{"cells":[]}])";
  EXPECT_EQ(total(("{" + rows + "}").c_str()), 15.5);
  EXPECT_EQ(total((R"({"totals":{"cells":[{}]},)" + rows + "}").c_str()), 15.5);
  EXPECT_EQ(total("{}"), 0);
  EXPECT_EQ(
      reportCurrency(
          decodeReportResponse(
              R"({"headers":[{"name":"DATE"},{"currencyCode":"USD"},{"currencyCode":"GBP"}]})")
              .headers),
      "USD");
  EXPECT_EQ(reportCurrency(std::nullopt), "EUR");
}

TEST(Periods, countBackFromTheLatestDay) {
  DayTable days;
  const auto formatter = makeDayFormatter();
  const auto first = instant("2026-04-17T00:00:00");
  for (int day = 0; day < 35; ++day)  // earnings 1 to 35, the last on 2026-05-21
    days[formatter.text(reportCalendar.addingDays(first, day))] = {.earnings = day + 1.0,
                                                                   .clicks = day + 100.0};
  days.erase("2026-05-17");  // 31
  const auto now = instant("2026-05-22T12:00:00");
  EXPECT_EQ(anchorDay(days, now), instant("2026-05-21T00:00:00"));
  const auto figures = periodFigures(days, anchorDay(days, now));
  EXPECT_EQ(figures.today, 35);
  EXPECT_EQ(figures.yesterday, 34);
  EXPECT_EQ(figures.yesterdayPrevWeek, 27);
  EXPECT_EQ(figures.last7, 28 + 29 + 30 + 32 + 33 + 34);
  EXPECT_EQ(figures.prev7, 21 + 22 + 23 + 24 + 25 + 26 + 27);
  EXPECT_EQ(figures.monthToDate, (15 + 35) * 21 / 2 - 31);
  EXPECT_EQ(figures.perfYesterday.clicks, 133);
  EXPECT_EQ(figures.perfPrevWeek.clicks, 126);
}

TEST(Periods, surviveOddKeys) {
  const auto now = instant("2026-05-22T12:00:00");
  const DayTable odd{
      {"2026-05-21", {.earnings = 3}}, {"x", {.earnings = 5}}, {"xyz", {.earnings = 7}}};
  EXPECT_EQ(anchorDay(odd, now), now);
  const auto figures = periodFigures(odd, now);
  EXPECT_EQ(figures.today, 7);
  EXPECT_EQ(figures.monthToDate, 7);
  EXPECT_EQ(figures.yesterday, 3);
  const DayTable newMonth{{"2026-05-31", {.earnings = 3}}, {"2026-06-01", {.earnings = 4}}};
  EXPECT_EQ(periodFigures(newMonth, instant("2026-06-01T00:00:00")).monthToDate, 4);
}

TEST(Amounts, followTheRuleOfPointsAndCommas) {
  const std::pair<const char*, std::optional<double>> amounts[] = {
      {"$1,234.57", 1234.57},      {"€389.85", 389.85},   {"1 234,57 €", 1234.57},
      {"¥1,235 JPY", 1.235},       {"-£87.65", -87.65},   {"1\u202f234,5", 1234.5},
      {"1,234,567", std::nullopt}, {"5-", std::nullopt},  {"none", std::nullopt},
      {"", std::nullopt},          {"½ €", std::nullopt}, {"1.2.3", std::nullopt}};
  for (const auto& [text, expected] : amounts) EXPECT_EQ(parseAmount(text), expected) << text;
}

using Payments = tests::Environment;

TEST_F(Payments, areSummarised) {
  const auto unpaid = payment("unpaid", nullptr, "€1,389.85");
  EXPECT_EQ(summaryOf("{}"), "none | none | none");
  EXPECT_EQ(summaryOf(listOf({unpaid})), "€1,389.85 | none | none");
  EXPECT_EQ(summaryOf(listOf({payment("youtube-unpaid", R"({"year":2030})", "€5.00"),
                              payment("2026-04-21", R"({"year":2026,"month":4,"day":21})", "€1.00"),
                              payment("2026-05-21", R"({"year":2026,"month":5,"day":21})", "€2.00"),
                              payment("again", R"({"year":2026,"month":5,"day":21})", "€3.00"),
                              payment("no-day", R"({"year":2026,"month":5})", "€4.00"), unpaid})),
            "€1,389.85 | €2.00 | May 21, 2026");
  EXPECT_EQ(summaryOf(listOf({payment("unpaid", R"({"year":2030})", nullptr), unpaid})),
            "none | none | none")
      << "the first unpaid one decides, though it has no amount";
  EXPECT_EQ(summaryOf(listOf({payment("unpaid", nullptr, "pending"), payment("x", "{}", nullptr)})),
            "pending | none | Jan 1, 1");
  setLanguages("fr");
  EXPECT_EQ(summaryOf(listOf({payment("unpaid", nullptr, "€389.85"),
                              payment("a", R"({"year":2026,"month":5.0,"day":21})", "€341.95")})),
            "389,85\u00a0€ | 341,95\u00a0€ | 21 mai 2026");
}

TEST_F(Payments, datesMayBeAbsurd) {
  EXPECT_EQ(paymentDateLabel({2026, 13, 32}), "Feb 1, 2027");
  EXPECT_EQ(paymentDateLabel({INT64_MAX, 1, 1}), "");
  EXPECT_EQ(
      summaryOf(listOf(
          {payment("a", R"({"year":9223372036854775807,"month":9223372036854775807})", "€1.00"),
           payment("b", R"({"year":2026,"month":5,"day":21})", "€2.00")})),
      "none | €1.00 | ");
  EXPECT_THROW(summaryOf(listOf({payment("a", R"({"day":"21"})", nullptr)})),
               platform::JsonDecodingError);
}
