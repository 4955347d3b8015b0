#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <cmath>

#include "VelmoraWidget/CurrencyFormat.hpp"
#include "VelmoraWidget/PerformanceMetrics.hpp"
#include "VelmoraWidget/SnapshotCache.hpp"
#include "VelmoraWidget/VelmoraSnapshot.hpp"
#include "platform/foundation/user_defaults.hpp"
#include "tests/support/environment.hpp"

using namespace velmora;
using platform::Json;
using platform::UserDefaults;

TEST(Snapshot, hasTheStoredForm) {
  EXPECT_EQ(
      encodeSnapshot(VelmoraSnapshot::sample()),
      R"({"today":9.21,"yesterday":11.49,"yesterdayPrevWeek":16.36,"last7":96,"prev7":112.58,)"
      R"("monthToDate":217.81,"monthLastYear":195.92,"perfYesterday":{"pageViews":4510,"rpm":2.55,)"
      R"("impressions":15100,"clicks":203,"cpc":0.06,"ctr":4.5},"perfPrevWeek":{"pageViews":3671,)"
      R"("rpm":4.45,"impressions":14493,"clicks":176,"cpc":0.09,"ctr":4.79},"balance":"389,85 €",)"
      R"("lastPaymentAmount":"341,95 €","lastPaymentDateLabel":"21 mai 2026","currency":"EUR",)"
      R"("updatedAt":-978307200})");
}

TEST(Snapshot, needsEveryKeyButTheTexts) {
  const Json whole = jsonForm(VelmoraSnapshot::sample());
  const auto decodes = [](const Json& form) {
    try {
      decodeSnapshot(form.dump());
      return true;
    } catch (const platform::JsonDecodingError&) {
      return false;
    }
  };
  for (const auto& [key, value] : whole.items()) {
    const bool optional = key == "balance" || key.starts_with("lastPayment");
    Json form = whole;
    form.erase(key);
    EXPECT_EQ(decodes(form), optional) << key << " missing";
    form[key] = nullptr;
    EXPECT_EQ(decodes(form), optional) << key << " null";
    form[key] = true;
    EXPECT_FALSE(decodes(form)) << key << " mistyped";
    if (!value.is_object()) continue;
    for (const auto& inner : value.items()) {
      Json nested = whole;
      nested[key].erase(inner.key());
      EXPECT_FALSE(decodes(nested)) << key << "." << inner.key();
    }
  }
}

TEST(Snapshot, comesBackUnchanged) {
  auto snapshot = VelmoraSnapshot::sample();
  snapshot.balance.reset();
  snapshot.lastPaymentAmount.reset();
  snapshot.lastPaymentDateLabel.reset();
  snapshot.updatedAt = {801'234'567.123456789};
  snapshot.today = 0.1 + 0.2;
  const auto form = encodeSnapshot(snapshot);
  EXPECT_EQ(decodeSnapshot(form), snapshot);
  EXPECT_EQ(form.find("balance"), std::string::npos);
  auto extended = jsonForm(snapshot);
  extended["unknown"] = 1;
  extended["balance"] = nullptr;
  EXPECT_EQ(decodeSnapshot(extended.dump()), snapshot);
}

using CacheTest = tests::Environment;

TEST_F(CacheTest, leavesUnreadableBytesAndRemovesWhatCannotBeSaved) {
  const auto defaults = UserDefaults::standard();
  defaults.setData(snapshotCacheKey, "{broken");
  defaults.setString("adsense.account", "accounts/pub-1");
  EXPECT_EQ(loadCachedSnapshot(), std::nullopt);
  EXPECT_EQ(defaults.data(snapshotCacheKey), "{broken");
  defaults.setString(snapshotCacheKey, encodeSnapshot(VelmoraSnapshot::sample()));
  EXPECT_EQ(loadCachedSnapshot(), std::nullopt) << "a string is no data";
  saveCachedSnapshot(VelmoraSnapshot::sample());
  auto snapshot = VelmoraSnapshot::sample();
  snapshot.perfYesterday.rpm = NAN;
  saveCachedSnapshot(snapshot);
  EXPECT_EQ(defaults.data(snapshotCacheKey), std::nullopt);
  EXPECT_EQ(defaults.string("adsense.account"), "accounts/pub-1");
}

using TextsTest = tests::Environment;

TEST_F(TextsTest, ofValues) {
  const auto text = [](MetricKind kind, double value, const char* currency = "EUR") {
    return PerfMetric{"", "", kind, {value, 0}, currency}.valueText();
  };
  const std::pair<double, const char*> counts[] = {
      {203, "203"},       {999.6, "1,000"},   {1000, "1.00 k"},    {4510, "4.51 k"},
      {9999, "10.00 k"},  {10'000, "10.0 k"}, {99999, "100.0 k"},  {100'000, "100 k"},
      {-4510, "-4.51 k"}, {0, "0"},           {1e9, "1,000,000 k"}};
  for (const auto& [value, expected] : counts) EXPECT_EQ(text(MetricKind::count, value), expected);
  EXPECT_EQ(text(MetricKind::percent, 4.5), "4.50 %");
  EXPECT_EQ(text(MetricKind::percent, 0.06), "0.06 %");
  EXPECT_EQ(text(MetricKind::currency, 2.55), "€2.55");
  EXPECT_EQ(text(MetricKind::currency, 2.555, "??"), "2.56");
  setLanguages("fr");
  EXPECT_EQ(text(MetricKind::count, 4510), "4,51 k");
  for (const double value : {NAN, INFINITY, -INFINITY})
    EXPECT_FALSE(text(MetricKind::count, value).empty());
}

TEST_F(TextsTest, ofChanges) {
  const std::tuple<double, double, std::optional<std::string>> changes[] = {
      {4510, 3671, "(+23 %)"}, {2.55, 4.45, "(-43 %)"}, {5, 5, "(+0 %)"},
      {99.7, 100, "(-0 %)"},   {7, 0, std::nullopt},    {0, 0, std::nullopt},
      {-5, -10, "(+50 %)"},    {-20, -10, "(-100 %)"},  {1e300, 1e-300, "(+∞ %)"}};
  for (const auto& [current, previous, expected] : changes)
    EXPECT_EQ((Comparison{current, previous}.deltaText()), expected) << current;
  std::vector<std::string> titles;
  for (const auto& metric : perfMetrics(VelmoraSnapshot::sample()))
    titles.push_back(metric.id + " " + metric.valueText() + " " + *metric.comparison.deltaText());
  EXPECT_THAT(titles,
              testing::ElementsAre("pv 4.51 k (+23 %)", "rpm €2.55 (-43 %)", "imp 15.1 k (+4 %)",
                                   "clicks 203 (+15 %)", "cpc €0.06 (-33 %)", "ctr 4.50 % (-6 %)"));
}

TEST_F(TextsTest, ofAmountsFollowTheFirstLanguageNotTheRegion) {
  setenv("LC_ALL", "en_US.UTF-8", 1);
  setLanguages("fr_FR:en");
  EXPECT_EQ(formatCurrency(389.85, "EUR"), "389,85\u00a0€");
  setenv("LC_ALL", "de_DE.UTF-8", 1);
  unsetenv("LANGUAGE");
  EXPECT_EQ(displayLocale(), "de_DE");
  EXPECT_EQ(formatCurrency(1234.5, "EUR"), "1.234,50\u00a0€");
}
