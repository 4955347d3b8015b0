#include "VelmoraWidget/WidgetComponents.hpp"

#include "VelmoraWidget/ProgressRing.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace velmora {

using platform::Alignment;
using platform::Color;
using platform::Font;
using platform::FontDesign;
using platform::FontWeight;
using platform::HorizontalAlignment;
using platform::hStack;
using platform::Symbol;
using platform::View;
using platform::vStack;

namespace {

constexpr const char* phraseSeparator = ", ";

bool isUp(const Comparison& comparison) { return comparison.current - comparison.previous >= 0; }

}  // namespace

View WidgetTitle::body() const {
  return platform::label(platform::localizedText("AdSense earnings"), Symbol::hexagonGrid)
      .font(Font::caption().withWeight(FontWeight::semibold))
      .foregroundColor(accentGold);
}

View WidgetStat::body() const {
  const auto valueFont = prominent ? Font::system(20, FontWeight::bold, FontDesign::rounded)
                                   : Font::system(16, FontWeight::semibold, FontDesign::rounded);
  return vStack({.alignment = HorizontalAlignment::leading, .spacing = 2},
                {
                    platform::text(title)
                        .font(Font::caption2())
                        .foregroundColor(Color::white.opacity(0.55))
                        .lineLimit(1)
                        .minimumScaleFactor(0.6),
                    platform::text(value)
                        .font(valueFont)
                        .foregroundColor(prominent ? accentGold : Color::white)
                        .minimumScaleFactor(0.5)
                        .lineLimit(1),
                })
      .frame({.maxWidth = platform::unbounded, .alignment = Alignment::leading})
      .accessibilityLabel(title + phraseSeparator + value);
}

View WidgetDelta::body() const {
  const bool up = isUp(comparison);
  platform::Views parts{
      platform::symbol(up ? Symbol::triangleUp : Symbol::triangleDown).font(Font::system(7))};
  if (const auto change = comparison.deltaText()) parts.push_back(platform::text(*change));
  return hStack({.spacing = 2}, parts)
      .font(Font::system(10, FontWeight::medium))
      .foregroundColor(up ? Color::systemGreen : Color::systemRed)
      .lineLimit(1)
      .minimumScaleFactor(0.6);
}

std::string WidgetDelta::spokenText() const {
  const bool up = isUp(comparison);
  const auto change = comparison.deltaText();
  if (!change) return up ? platform::localizedString("up") : platform::localizedString("down");
  const auto percentage = change->substr(2, change->size() - 3);  // without "(+" and ")"
  return up ? platform::localizedFormat("up %s", {percentage})
            : platform::localizedFormat("down %s", {percentage});
}

View WidgetRing::body() const {
  const ProgressRing ring{.progress = goal > 0 ? value / goal : 0,
                          .diameter = diameter,
                          .lineWidth = 6,
                          .centerFontSize = diameter * 0.22,
                          .idleTextColor = Color::white};
  platform::Views parts{
      ring,
      platform::text(title).font(Font::caption2()).foregroundColor(Color::white.opacity(0.6))};
  auto phrase = title + phraseSeparator + ring.percentText();
  if (subtitle) {
    parts.push_back(platform::text(*subtitle)
                        .font(Font::system(11, FontWeight::semibold, FontDesign::rounded))
                        .foregroundColor(Color::white.opacity(0.85))
                        .minimumScaleFactor(0.6)
                        .lineLimit(1));
    phrase += phraseSeparator + *subtitle;
  }
  return vStack({.spacing = 4}, parts).accessibilityLabel(phrase);
}

}  // namespace velmora
