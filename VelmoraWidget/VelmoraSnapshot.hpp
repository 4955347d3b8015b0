#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/instant.hpp"
#include "platform/foundation/json.hpp"

namespace velmora {

/// The performance values of one day.
struct PerfValues {
  double pageViews = 0;
  double rpm = 0;  ///< page revenue per thousand page views, in the account's currency
  double impressions = 0;
  double clicks = 0;
  double cpc = 0;  ///< cost per click, in the account's currency
  double ctr = 0;  ///< page click-through rate in percent: 4.5 means 4.5 %

  bool operator==(const PerfValues&) const = default;
};

/// Everything the widget shows. Amounts are in units of the account's currency, at full
/// precision; they are rounded only where texts are made of them.
struct VelmoraSnapshot {
  using PerfValues = velmora::PerfValues;

  double today = 0;
  double yesterday = 0;
  double yesterdayPrevWeek = 0;  ///< the day one week before yesterday
  double last7 = 0;              ///< the seven days before today
  double prev7 = 0;              ///< the seven days before those
  double monthToDate = 0;        ///< today included
  double monthLastYear = 0;      ///< the same stretch of the month a year earlier
  PerfValues perfYesterday;
  PerfValues perfPrevWeek;
  /// Ready display texts with their currency; absent when unknown.
  std::optional<std::string> balance;
  std::optional<std::string> lastPaymentAmount;
  std::optional<std::string> lastPaymentDateLabel;
  std::string currency;  ///< ISO 4217 code
  platform::Instant updatedAt;

  bool operator==(const VelmoraSnapshot&) const = default;

  /// The figures shown while there are no others.
  static const VelmoraSnapshot& sample();
};

/// The JSON form: one object with the fields' names as keys; absent texts are left out, and
/// `updatedAt` is in seconds since the reference date.
platform::Json jsonForm(const VelmoraSnapshot& snapshot);

/// The JSON form as text; throws platform::JsonEncodingError when a number is not finite.
std::string encodeSnapshot(const VelmoraSnapshot& snapshot);

/// Reads the JSON form. Texts may be missing or null, other keys are ignored; anything else that
/// is missing or mistyped throws platform::JsonDecodingError.
VelmoraSnapshot decodeSnapshot(std::string_view json);

}  // namespace velmora
