#include "VelmoraWidget/ProgressRing.hpp"

#include <cmath>

#include "platform/foundation/localized_strings.hpp"

namespace velmora {

using platform::Color;
using platform::Font;
using platform::LineCap;

namespace {

constexpr double quarterTurnBack = -0.25;  // from three o'clock to twelve

}  // namespace

std::string ProgressRing::percentText() const {
  const double percent = std::round(progress * 100);
  const bool fits = percent >= -0x1p63 && percent < 0x1p63;
  if (!fits) return "—";
  return platform::localizedFormat("%lld %%", {static_cast<std::int64_t>(percent)});
}

platform::View ProgressRing::body() const {
  const bool reached = progress >= 1;
  const Color stateColor = reached ? Color::systemGreen : ringAccentColor;
  return platform::layers({
                              platform::circle({.lineWidth = lineWidth, .lineCap = LineCap::butt})
                                  .foregroundColor(stateColor.opacity(0.18)),
                              platform::circle({.trimTo = progress,
                                                .lineWidth = lineWidth,
                                                .lineCap = LineCap::round,
                                                .rotation = quarterTurnBack})
                                  .foregroundColor(stateColor),
                              platform::text(percentText())
                                  .font(Font::system(centerFontSize, platform::FontWeight::bold,
                                                     platform::FontDesign::rounded))
                                  .foregroundColor(reached ? Color::systemGreen : idleTextColor)
                                  .lineLimit(1)
                                  .minimumScaleFactor(0.5),
                          })
      .frame({.width = diameter, .height = diameter});
}

}  // namespace velmora
