#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace sandbox {

/// What one day brought.
struct DayFigures {
  double earnings = 0;  ///< in the publisher's currency, whole minor units
  std::int64_t pageViews = 0;
  std::int64_t adRequests = 0;
  std::int64_t matchedAdRequests = 0;
  std::int64_t impressions = 0;
  std::int64_t clicks = 0;

  DayFigures& operator+=(const DayFigures& other);
};

/// A small made-up publisher: busier on weekdays than at weekends, growing from year to year, with
/// a few days without any events. The figures depend on the seed and the date alone.
class Publisher {
 public:
  Publisher(std::uint64_t seed, std::string currency, std::chrono::sys_days today);

  [[nodiscard]] const std::string& currency() const { return currency_; }
  [[nodiscard]] std::chrono::sys_days today() const { return today_; }
  /// The account's resource name.
  [[nodiscard]] std::string accountName() const;

  /// Absent for a day without events, before the publisher began, or in the future. Today is
  /// part of a day.
  [[nodiscard]] std::optional<DayFigures> day(std::chrono::sys_days date) const;

  /// All earnings of a stretch of days, both included.
  [[nodiscard]] double earnings(std::chrono::sys_days first, std::chrono::sys_days last) const;

  /// Digits behind the point of an amount in the currency.
  [[nodiscard]] int fractionDigits() const;

 private:
  [[nodiscard]] double noise(std::chrono::sys_days date, std::uint64_t purpose) const;

  std::uint64_t seed_;
  std::string currency_;
  std::chrono::sys_days today_;
};

}  // namespace sandbox
