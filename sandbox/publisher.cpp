#include "sandbox/publisher.hpp"

#include <cmath>
#include <cstdio>
#include <random>

namespace sandbox {

namespace chr = std::chrono;

namespace {

constexpr chr::sys_days firstDay = chr::year{2023} / 3 / 6;
constexpr double pageViewsAtStart = 2100;
constexpr double growthPerYear = 1.24;
constexpr double shareOfToday = 0.61;  // how much of today has passed
constexpr double weekdayFactors[] = {0.80, 1.07, 1.12, 1.09, 1.04, 0.98, 0.76};  // from Sunday
constexpr double daysWithoutEvents = 0.02;

std::int64_t count(double value) { return static_cast<std::int64_t>(std::llround(value)); }

bool isWholeUnitCurrency(const std::string& currency) {
  return currency == "JPY" || currency == "KRW" || currency == "CLP" || currency == "VND";
}

double unitsPerEuro(const std::string& currency) {
  if (currency == "JPY") return 160;
  if (currency == "KRW") return 1480;
  if (currency == "CLP") return 1000;
  if (currency == "VND") return 27000;
  return 1;
}

}  // namespace

DayFigures& DayFigures::operator+=(const DayFigures& other) {
  earnings += other.earnings;
  pageViews += other.pageViews;
  adRequests += other.adRequests;
  matchedAdRequests += other.matchedAdRequests;
  impressions += other.impressions;
  clicks += other.clicks;
  return *this;
}

Publisher::Publisher(std::uint64_t seed, std::string currency, chr::sys_days today)
    : seed_(seed), currency_(std::move(currency)), today_(today) {}

std::string Publisher::accountName() const {
  std::mt19937_64 generator(seed_);
  char name[64];
  std::snprintf(name, sizeof name, "accounts/pub-%016llu",
                static_cast<unsigned long long>(generator() % 10'000'000'000'000'000ULL));
  return name;
}

int Publisher::fractionDigits() const { return isWholeUnitCurrency(currency_) ? 0 : 2; }

double Publisher::noise(chr::sys_days date, std::uint64_t purpose) const {
  std::seed_seq seeds{seed_, static_cast<std::uint64_t>(date.time_since_epoch().count()), purpose};
  std::mt19937_64 generator(seeds);
  return static_cast<double>(generator() >> 11) * 0x1p-53;  // 0 to 1
}

std::optional<DayFigures> Publisher::day(chr::sys_days date) const {
  if (date < firstDay || date > today_) return std::nullopt;
  if (date != today_ && noise(date, 0) < daysWithoutEvents) return std::nullopt;
  const auto age = static_cast<double>((date - firstDay).count());
  const auto vary = [&](std::uint64_t purpose, double spread) {
    return 1 + (noise(date, purpose) * 2 - 1) * spread;
  };
  const double pageViews = pageViewsAtStart * std::pow(growthPerYear, age / 365) *
                           weekdayFactors[chr::weekday{date}.c_encoding()] * vary(1, 0.14) *
                           (date == today_ ? shareOfToday : 1);
  const double impressions = pageViews * 3.3 * vary(2, 0.06);
  const double clicks = pageViews * 0.045 * vary(3, 0.18);
  const double rpm = 2.8 * vary(4, 0.25) * unitsPerEuro(currency_);
  const double minorUnits = isWholeUnitCurrency(currency_) ? 1 : 100;
  return DayFigures{.earnings = std::round(pageViews * rpm / 1000 * minorUnits) / minorUnits,
                    .pageViews = count(pageViews),
                    .adRequests = count(impressions * 1.3),
                    .matchedAdRequests = count(impressions * 1.12),
                    .impressions = count(impressions),
                    .clicks = count(clicks)};
}

double Publisher::earnings(chr::sys_days first, chr::sys_days last) const {
  double sum = 0;
  for (auto date = std::max(first, firstDay); date <= std::min(last, today_); date += chr::days{1})
    sum += day(date).value_or(DayFigures{}).earnings;
  return sum;
}

}  // namespace sandbox
