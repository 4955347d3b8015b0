#include "VelmoraWidget/EarningsWidgetView.hpp"

#include "VelmoraWidget/CurrencyFormat.hpp"
#include "VelmoraWidget/PerformanceMetrics.hpp"
#include "VelmoraWidget/WidgetComponents.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace velmora {

using platform::Alignment;
using platform::Color;
using platform::Font;
using platform::FontDesign;
using platform::FontWeight;
using platform::grid;
using platform::HorizontalAlignment;
using platform::hStack;
using platform::localizedString;
using platform::localizedText;
using platform::spacer;
using platform::unbounded;
using platform::View;
using platform::vStack;
using platform::WidgetFamily;

namespace {

std::string todayText(const VelmoraSnapshot& snapshot) {
  return formatCurrency(snapshot.today, snapshot.currency);
}

std::string monthText(const VelmoraSnapshot& snapshot) {
  return formatCurrency(snapshot.monthToDate, snapshot.currency);
}

std::string balanceText(const VelmoraSnapshot& snapshot) { return snapshot.balance.value_or("—"); }

/// The rings of the medium and the large layout.
View objectiveRings(const EarningsEntry& entry, double spacing) {
  const auto& [date, snapshot, objectives, isConnected] = entry;
  return hStack({.spacing = spacing},
                {
                    WidgetRing{localizedString("Day"), snapshot.today, objectives.daily},
                    WidgetRing{localizedString("Month"), snapshot.monthToDate, objectives.monthly},
                });
}

View figuresGrid(const VelmoraSnapshot& snapshot) {
  const auto yesterdayText = formatCurrency(snapshot.yesterday, snapshot.currency);
  return grid({.columns = 2,
               .columnSpacing = 10,
               .rowSpacing = 12,
               .cellAlignment = HorizontalAlignment::leading},
              {
                  WidgetStat{localizedString("Today"), todayText(snapshot), true},
                  WidgetStat{localizedString("Yesterday"), yesterdayText, false},
                  WidgetStat{"Ce mois", monthText(snapshot), false},
                  WidgetStat{localizedString("Balance"), balanceText(snapshot), false},
              })
      .frame({.maxWidth = unbounded});
}

View metricCell(const PerfMetric& metric) {
  const WidgetDelta delta{metric.comparison};
  const auto value = metric.valueText();
  return vStack({.alignment = HorizontalAlignment::leading, .spacing = 2},
                {
                    platform::text(metric.title)
                        .font(Font::caption2())
                        .foregroundColor(Color::white.opacity(0.55)),
                    platform::text(value)
                        .font(Font::system(15, FontWeight::semibold, FontDesign::rounded))
                        .foregroundColor(Color::white)
                        .minimumScaleFactor(0.6)
                        .lineLimit(1),
                    delta,
                })
      .frame({.maxWidth = unbounded, .alignment = Alignment::leading})
      .accessibilityLabel(metric.title + ", " + value + ", " + delta.spokenText());
}

View metricsGrid(const VelmoraSnapshot& snapshot) {
  platform::Views cells;
  for (const auto& metric : perfMetrics(snapshot)) cells.push_back(metricCell(metric));
  return grid({.columns = 3, .columnSpacing = 14, .rowSpacing = 16}, cells);
}

}  // namespace

View EarningsWidgetView::body(const platform::ViewEnvironment& environment) const {
  if (!entry.isConnected) return DisconnectedWidget{};
  const auto envFamily = environment.get(WidgetFamily::systemSmall);
  switch (familyOverride.value_or(envFamily)) {
    case WidgetFamily::systemMedium:
      return MediumWidget{entry};
    case WidgetFamily::systemLarge:
      return LargeWidget{entry};
    default:
      return SmallWidget{entry};
  }
}

View DisconnectedWidget::body() const {
  return vStack({.spacing = 6},
                {
                    platform::symbol(platform::Symbol::hexagonGrid).foregroundColor(accentGold),
                    localizedText("Open Velmora to sign in")
                        .font(Font::caption2())
                        .foregroundColor(Color::white.opacity(0.7))
                        .multilineTextAlignment(HorizontalAlignment::center),
                })
      .frame({.maxWidth = unbounded, .maxHeight = unbounded})
      .padding(8);
}

View SmallWidget::body() const {
  const auto& [date, snapshot, objectives, isConnected] = entry;
  constexpr double diameter = 62;
  return vStack({.spacing = 10},
                {
                    hStack({.spacing = 14},
                           {
                               WidgetRing{localizedString("Day"), snapshot.today, objectives.daily,
                                          todayText(snapshot), diameter},
                               WidgetRing{localizedString("Month"), snapshot.monthToDate,
                                          objectives.monthly, monthText(snapshot), diameter},
                           }),
                })
      .frame({.maxWidth = unbounded, .maxHeight = unbounded});
}

View MediumWidget::body() const {
  const auto& snapshot = entry.snapshot;
  const auto figures =
      vStack({.alignment = HorizontalAlignment::leading, .spacing = 10},
             {
                 WidgetStat{localizedString("Today"), todayText(snapshot), true},
                 WidgetStat{localizedString("Balance"), balanceText(snapshot), false},
             });
  return vStack({.alignment = HorizontalAlignment::leading, .spacing = 0},
                {
                    WidgetTitle{},
                    spacer(),
                    hStack({.spacing = 18}, {objectiveRings(entry, 14), spacer(), figures}),
                    spacer(),
                })
      .frame({.maxWidth = unbounded, .maxHeight = unbounded, .alignment = Alignment::topLeading});
}

View LargeWidget::body() const {
  return vStack(
             {.alignment = HorizontalAlignment::leading, .spacing = 0},
             {
                 WidgetTitle{},
                 spacer(10),
                 hStack({.spacing = 14}, {objectiveRings(entry, 10), figuresGrid(entry.snapshot)}),
                 spacer(12),
                 platform::divider().overlay(Color::white.opacity(0.15)),
                 spacer(12),
                 localizedText("Performance · Yesterday")
                     .font(Font::caption().withWeight(FontWeight::semibold))
                     .foregroundColor(Color::white.opacity(0.8)),
                 spacer(10),
                 metricsGrid(entry.snapshot),
                 spacer(0),
             })
      .frame({.maxWidth = unbounded, .maxHeight = unbounded, .alignment = Alignment::topLeading});
}

}  // namespace velmora
