#include "VelmoraWidget/PerformanceMetrics.hpp"

#include <cmath>

#include "VelmoraWidget/CurrencyFormat.hpp"
#include "platform/foundation/formatting.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace velmora {

namespace {

std::string countText(double count) {
  if (!(std::abs(count) >= 1000)) return formatNumber(count, 0);
  const double thousands = count / 1000;
  const double size = std::abs(thousands);
  const int digits = size >= 100 ? 0 : size >= 10 ? 1 : 2;
  return formatNumber(thousands, digits) + " k";
}

}  // namespace

std::string formatNumber(double value, int fractionDigits) {
  const auto text = platform::decimalText(value, fractionDigits, displayLocale());
  return text ? *text : platform::plainDecimalText(value, fractionDigits);
}

std::optional<std::string> Comparison::deltaText() const {
  if (previous == 0) return std::nullopt;
  const double change = (current - previous) / std::abs(previous) * 100;
  const char* sign = change < 0 ? "-" : "+";
  return std::string("(") + sign + formatNumber(std::abs(change), 0) + " %)";
}

std::string PerfMetric::valueText() const {
  switch (kind) {
    case MetricKind::currency:
      return formatCurrency(comparison.current, currency);
    case MetricKind::percent:
      return formatNumber(comparison.current, 2) + " %";
    case MetricKind::count:
      break;
  }
  return countText(comparison.current);
}

std::vector<PerfMetric> perfMetrics(const VelmoraSnapshot& snapshot) {
  const auto metric = [&snapshot](const char* id, const char* titleKey, MetricKind kind,
                                  double PerfValues::* field) {
    const Comparison comparison{snapshot.perfYesterday.*field, snapshot.perfPrevWeek.*field};
    return PerfMetric{id, platform::localizedString(titleKey), kind, comparison, snapshot.currency};
  };
  return {metric("pv", "Page views", MetricKind::count, &PerfValues::pageViews),
          metric("rpm", "Page RPM", MetricKind::currency, &PerfValues::rpm),
          metric("imp", "Impressions", MetricKind::count, &PerfValues::impressions),
          metric("clicks", "Clicks", MetricKind::count, &PerfValues::clicks),
          metric("cpc", "CPC", MetricKind::currency, &PerfValues::cpc),
          metric("ctr", "Page CTR", MetricKind::percent, &PerfValues::ctr)};
}

}  // namespace velmora
