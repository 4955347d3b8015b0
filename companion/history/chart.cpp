#include "companion/history/chart.hpp"

#include <algorithm>

#include "companion/history/chart_geometry.hpp"
#include "companion/history/chart_legend.hpp"
#include "companion/history/chart_palette.hpp"
#include "companion/history/chart_plot.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/views/layout.hpp"

namespace companion {

using platform::Font;
using platform::FontWeight;
using platform::HorizontalAlignment;
using platform::unbounded;
using platform::View;

namespace {

/// Makes the texts of a chart.
struct Texts {
  const ChartStyle& style;
  ChartPalette palette = chartPalette(style);

  [[nodiscard]] View plain(const std::string& content) const {
    return platform::text(content)
        .font(Font::system(12 * style.textScale))
        .foregroundColor(palette.faint);
  }
  [[nodiscard]] View figure(const std::string& content, double size) const {
    return platform::text(content)
        .font(Font::system(size * style.textScale, FontWeight::semibold))
        .foregroundColor(palette.text)
        .minimumScaleFactor(0.5)
        .lineLimit(1);
  }
};

View column(platform::Views children, double spacing) {
  return platform::vStack({.alignment = HorizontalAlignment::leading, .spacing = spacing},
                          std::move(children))
      .frame({.maxWidth = unbounded, .alignment = platform::Alignment::leading});
}

/// What all bars come to, or the one that is pointed at. As high in either case.
View heading(const ChartModel& model, const ChartStyle& style) {
  const Texts texts{style};
  const auto index = style.highlighted;
  const bool isOne = index && *index < model.bars.size();
  const auto& title = isOne ? model.bars[*index].title : model.title;
  const auto& amount = isOne ? model.bars[*index].amount : model.total;
  const auto& note = isOne ? model.bars[*index].note : model.mean;
  const auto line = [&](const std::string& content) {
    return texts.plain(content).minimumScaleFactor(0.6).lineLimit(1);
  };
  return column({line(title), texts.figure(amount, 24), line(note)}, 1);
}

View figures(const ChartModel& model, const ChartStyle& style) {
  const Texts texts{style};
  platform::Views cells;
  double widest = 1;
  for (const auto& [title, value] : model.figures) {
    widest = std::max(widest, widestText(title, 12 * style.textScale));
    cells.push_back(column({texts.plain(title), texts.figure(value, 15)}, 1)
                        .accessibilityLabel(title + ", " + value));
  }
  const bool fits = widest <= (style.width - 2 * chartInset) / 2;
  return platform::grid({.columns = fits ? 2 : 1,
                         .columnSpacing = 12,
                         .rowSpacing = 8,
                         .cellAlignment = HorizontalAlignment::leading},
                        std::move(cells));
}

View line(const ChartStyle& style) {
  return platform::rule({}).foregroundColor(chartPalette(style).line);
}

View emptyChart(const ChartStyle& style) {
  return Texts{style}
      .plain(platform::localizedString("There are no days yet."))
      .frame({.maxWidth = unbounded, .maxHeight = unbounded});
}

/// The chart without its inset; the plot takes that height, or what is left.
View content(const ChartModel& model, const ChartStyle& style, std::optional<double> plotHeight) {
  const auto plot = chartPlot(model, style).frame({.height = plotHeight});
  platform::Views rows{heading(model, style), platform::text("").font(Font::system(1)), plot,
                       chartNames(model, style), chartLegend(model, style)};
  if (style.hasFigures) {
    if (!model.figures.empty()) rows.insert(rows.end(), {line(style), figures(model, style)});
    rows.push_back(Texts{style}.plain(model.caption).font(Font::system(11 * style.textScale)));
  }
  return platform::vStack({.alignment = HorizontalAlignment::leading, .spacing = 10},
                          std::move(rows));
}

}  // namespace

View historyChart(const ChartModel& model, const ChartStyle& style) {
  return model.bars.empty() ? emptyChart(style) : content(model, style, std::nullopt);
}

platform::DrawList layOutChart(const ChartModel& model, const ChartStyle& style,
                               const platform::Typesetter& typesetter) {
  const auto ground = chartPalette(style).ground;
  platform::Canvas canvas;
  canvas.size = {style.width, style.height};
  canvas.inset = chartInset;
  canvas.scale = style.scale;
  canvas.rightToLeft = style.rightToLeft;
  canvas.background = {ground, ground};
  return platform::layOut(historyChart(model, style), canvas, typesetter);
}

double idealChartHeight(const ChartModel& model, const ChartStyle& style,
                        const platform::Typesetter& typesetter) {
  const double plot = std::clamp(style.width * 0.36, 130.0, 240.0);
  const auto view = model.bars.empty() ? emptyChart(style) : content(model, style, plot);
  return platform::measure(view, {style.width - 2 * chartInset, std::nullopt}, typesetter).height +
         2 * chartInset;
}

}  // namespace companion
