#include <benchmark/benchmark.h>
#include <pango/pangocairo.h>

#include <cstdlib>
#include <string>

#include "VelmoraWidget/CurrencyFormat.hpp"
#include "VelmoraWidget/EarningsWidgetView.hpp"
#include "VelmoraWidget/PerformanceMetrics.hpp"
#include "VelmoraWidget/WidgetComponents.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/raii.hpp"
#include "platform/views/element.hpp"
#include "platform/views/layout.hpp"
#include "platform/views/painter.hpp"
#include "platform/widgets/widget_drawing.hpp"

// The passes one by one, each family as a whole, and a hand-written function that paints the same
// large picture with fixed coordinates. Run by script/bench.

using namespace platform;

namespace {

constexpr double scale = 2;

velmora::EarningsEntry entry() {
  return {{}, velmora::VelmoraSnapshot::sample(), velmora::defaultObjectives, true};
}

WidgetView widget() {
  return {velmora::EarningsWidgetView{entry(), std::nullopt},
          {{0.08, 0.16, 0.30, 1}, {0.04, 0.09, 0.16, 1}}};
}

const Typesetter& typesetter() {
  static const auto system = systemTypesetter();
  return *system;
}

Canvas canvas(WidgetFamily family) {
  Canvas result;
  result.size = familySize(family);
  result.inset = 16;
  result.cornerRadius = 20;
  result.scale = scale;
  result.background = widget().containerBackground;
  result.environment.set(family);
  return result;
}

using Surface = Owned<cairo_surface_t, cairo_surface_destroy>;
using Context = Owned<cairo_t, cairo_destroy>;

Surface largeSurface() {
  return Surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 728, 764));
}

/// The texts of the large picture: numbers and amounts in the user's language.
void formatTexts(benchmark::State& state) {
  const auto& snapshot = velmora::VelmoraSnapshot::sample();
  for (auto _ : state) {
    for (const double amount : {snapshot.today, snapshot.yesterday, snapshot.monthToDate})
      benchmark::DoNotOptimize(velmora::formatCurrency(amount, snapshot.currency));
    for (const auto& metric : velmora::perfMetrics(snapshot)) {
      benchmark::DoNotOptimize(metric.valueText());
      benchmark::DoNotOptimize(metric.comparison.deltaText());
      benchmark::DoNotOptimize(velmora::WidgetDelta{metric.comparison}.spokenText());
    }
  }
}
BENCHMARK(formatTexts);

/// Makes a view's draw list and takes its items' texts to shape them alone.
void shapeTexts(benchmark::State& state) {
  const auto list = layOut(widget().content, canvas(WidgetFamily::systemLarge), typesetter());
  for (auto _ : state) {
    for (const auto& item : list.items) {
      if (const auto* text = std::get_if<TextItem>(&item.content))
        benchmark::DoNotOptimize(typesetter().shape(text->text, text->font));
    }
  }
}
BENCHMARK(shapeTexts);

void resolveMeasurePlaceEmit(benchmark::State& state) {
  const auto view = widget().content;
  const auto where = canvas(WidgetFamily::systemLarge);
  for (auto _ : state) benchmark::DoNotOptimize(layOut(view, where, typesetter()));
}
BENCHMARK(resolveMeasurePlaceEmit);

void paintLarge(benchmark::State& state) {
  const auto list = layOut(widget().content, canvas(WidgetFamily::systemLarge), typesetter());
  for (auto _ : state) {
    const auto surface = largeSurface();
    const Context context(cairo_create(surface.get()));
    cairo_scale(context.get(), scale, scale);
    paint(list, context.get());
  }
}
BENCHMARK(paintLarge);

void encodeLarge(benchmark::State& state) {
  const auto list = layOut(widget().content, canvas(WidgetFamily::systemLarge), typesetter());
  for (auto _ : state) benchmark::DoNotOptimize(paintPng(list));
}
BENCHMARK(encodeLarge);

template <WidgetFamily family>
void wholeFamily(benchmark::State& state) {
  const auto where = canvas(family);
  const auto size = where.size;
  for (auto _ : state) {
    const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32,
                                                     static_cast<int>(size.width * scale),
                                                     static_cast<int>(size.height * scale)));
    const Context context(cairo_create(surface.get()));
    cairo_scale(context.get(), scale, scale);
    paint(layOut(widget().content, where, typesetter()), context.get());
  }
}
BENCHMARK(wholeFamily<WidgetFamily::systemSmall>);
BENCHMARK(wholeFamily<WidgetFamily::systemMedium>);
BENCHMARK(wholeFamily<WidgetFamily::systemLarge>);

/// The same large picture, as one would write it by hand.
class HandWritten {
 public:
  HandWritten()
      : fonts_(pango_cairo_font_map_new()), pango_(pango_font_map_create_context(fonts_)) {
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    pango_cairo_context_set_font_options(pango_, options);
    cairo_font_options_destroy(options);
  }

  void paintLarge(cairo_t* context) {
    context_ = context;
    cairo_pattern_t* gradient = cairo_pattern_create_linear(0, 0, 0, 382);
    cairo_pattern_add_color_stop_rgb(gradient, 0, 0.08, 0.16, 0.30);
    cairo_pattern_add_color_stop_rgb(gradient, 1, 0.04, 0.09, 0.16);
    cairo_set_source(context, gradient);
    for (const auto& [x, y, turn] :
         {std::tuple(344, 20, 3), {344, 362, 0}, {20, 362, 1}, {20, 20, 2}})
      cairo_arc(context, x, y, 20, turn * 1.5708, (turn + 1) * 1.5708);
    cairo_fill(context);
    cairo_pattern_destroy(gradient);
    heading();
    ring(46, 88, 0.921, "92 %", "Day");
    ring(116, 88, 0.726, "73 %", "Month");
    figures();
    cairo_set_source_rgba(context, 1, 1, 1, 0.15);
    cairo_rectangle(context, 16, 164.5, 332, 0.5);
    cairo_fill(context);
    text(16, 190, "Inter Semi-Bold 10", "Performance · Yesterday", 1, 1, 1, 0.8);
    metrics();
  }

 private:
  void text(double x, double y, const char* font, const char* content, double r, double g, double b,
            double a) {
    PangoLayout* layout = pango_layout_new(pango_);
    PangoFontDescription* description = pango_font_description_from_string(font);
    pango_font_description_set_absolute_size(description,
                                             pango_font_description_get_size(description));
    PangoAttrList* attributes = pango_attr_list_new();
    pango_attr_list_insert(attributes, pango_attr_font_features_new("tnum=1"));
    pango_layout_set_attributes(layout, attributes);
    pango_attr_list_unref(attributes);
    pango_layout_set_font_description(layout, description);
    pango_layout_set_text(layout, content, -1);
    cairo_set_source_rgba(context_, r, g, b, a);
    cairo_move_to(context_, x, y);
    pango_cairo_show_layout(context_, layout);
    pango_font_description_free(description);
    g_object_unref(layout);
  }

  void heading() {
    cairo_set_source_rgb(context_, 1, 0.84, 0.42);
    for (int i = 0; i < 7; ++i) {
      cairo_new_path(context_);
      cairo_arc(context_, 22 + (i % 3 - 1) * 4, 22 + (i / 3 - 1) * 4, 1.8, 0, 6.2832);
      cairo_fill(context_);
    }
    text(32, 16, "Inter Semi-Bold 10", "AdSense earnings", 1, 0.84, 0.42, 1);
  }

  void ring(double x, double y, double fraction, const char* percent, const char* title) {
    cairo_set_line_width(context_, 6);
    cairo_set_source_rgba(context_, 0.92, 0.70, 0.20, 0.18);
    cairo_new_path(context_);
    cairo_arc(context_, x, y, 30, 0, 6.2832);
    cairo_stroke(context_);
    cairo_set_source_rgb(context_, 0.92, 0.70, 0.20);
    cairo_set_line_cap(context_, CAIRO_LINE_CAP_ROUND);
    cairo_arc(context_, x, y, 30, -1.5708, -1.5708 + fraction * 6.2832);
    cairo_stroke(context_);
    text(x - 15, y - 8, "Quicksand Semi-Bold 13.2", percent, 1, 1, 1, 1);
    text(x - 9, y + 34, "Inter Medium 10", title, 1, 1, 1, 0.6);
  }

  void figures() {
    const char* titles[] = {"Today", "Yesterday", "Ce mois", "Balance"};
    const char* values[] = {"€9.21", "€11.49", "€217.81", "389,85 €"};
    for (int i = 0; i < 4; ++i) {
      const double x = i % 2 == 0 ? 160 : 259;
      const double y = i < 2 ? 54 : 105;
      text(x, y, "Inter Medium 10", titles[i], 1, 1, 1, 0.55);
      if (i == 0) {
        text(x, y + 15, "Quicksand Bold 20", values[i], 1, 0.84, 0.42, 1);
      } else {
        text(x, y + 15, "Quicksand Semi-Bold 16", values[i], 1, 1, 1, 1);
      }
    }
  }

  void metrics() {
    const char* cells[][3] = {
        {"Page views", "4.51 k", "(+23 %)"}, {"Page RPM", "€2.55", "(-43 %)"},
        {"Impressions", "15.1 k", "(+4 %)"}, {"Clicks", "203", "(+15 %)"},
        {"CPC", "€0.06", "(-33 %)"},         {"Page CTR", "4.50 %", "(-6 %)"}};
    for (int i = 0; i < 6; ++i) {
      const double x = 16 + 115.3 * (i % 3);
      const double y = i < 3 ? 229 : 293;
      text(x, y, "Inter Medium 10", cells[i][0], 1, 1, 1, 0.55);
      text(x, y + 15, "Quicksand Semi-Bold 15", cells[i][1], 1, 1, 1, 1);
      cairo_set_source_rgb(context_, 0.2, 0.84, 0.3);
      cairo_new_path(context_);
      cairo_move_to(context_, x, y + 45);
      cairo_line_to(context_, x + 7, y + 45);
      cairo_line_to(context_, x + 3.5, y + 38);
      cairo_close_path(context_);
      cairo_fill(context_);
      text(x + 10, y + 35, "Inter Medium 10", cells[i][2], 0.2, 0.84, 0.3, 1);
    }
  }

  PangoFontMap* fonts_;
  PangoContext* pango_;
  cairo_t* context_ = nullptr;
};

void handWrittenLarge(benchmark::State& state) {
  HandWritten picture;
  for (auto _ : state) {
    const auto surface = largeSurface();
    const Context context(cairo_create(surface.get()));
    cairo_scale(context.get(), scale, scale);
    picture.paintLarge(context.get());
  }
}
BENCHMARK(handWrittenLarge);

}  // namespace

int main(int argumentCount, char** arguments) {
  setenv("LANGUAGE", "en_US", 1);
  loadStringTables();
  benchmark::Initialize(&argumentCount, arguments);
  benchmark::RunSpecifiedBenchmarks();
}
