#include "companion/window/history_chart.hpp"

#include <algorithm>
#include <cmath>

#include "companion/main_loop_tasks.hpp"
#include "platform/views/painter.hpp"

namespace companion::window {

namespace {

constexpr double usualDotsPerInch = 96;
constexpr int likelyWidth = 560;

/// How much larger than usual the user wants texts.
double textScale(GtkWidget* widget) {
  int dotsPerInch = 0;  // in 1024ths
  g_object_get(gtk_widget_get_settings(widget), "gtk-xft-dpi", &dotsPerInch, nullptr);
  return dotsPerInch > 0 ? dotsPerInch / 1024.0 / usualDotsPerInch : 1;
}

}  // namespace

HistoryChart::HistoryChart()
    : area_(GTK_WIDGET(g_object_new(GTK_TYPE_DRAWING_AREA, "accessible-role",
                                    GTK_ACCESSIBLE_ROLE_IMG, "focusable", TRUE, nullptr))) {
  gtk_widget_add_css_class(area_, "chart");
  gtk_drawing_area_set_draw_func(GTK_DRAWING_AREA(area_), draw, this, nullptr);
  listen();
}

void HistoryChart::listen() {
  connect(area_, "resize", [this] { runSoon([this] { fitHeight(); }); });
  connect(area_, "notify::has-focus", [this] {
    if (gtk_widget_has_focus(area_) == FALSE) highlight(std::nullopt);
  });
  auto* style = adw_style_manager_get_default();
  for (const char* signal : {"notify::dark", "notify::high-contrast"})
    connectWhileAlive(style, signal, area_, [this] { gtk_widget_queue_draw(area_); });
  auto* keys = gtk_event_controller_key_new();
  g_signal_connect(keys, "key-pressed", G_CALLBACK(keyPressed), this);
  gtk_widget_add_controller(area_, keys);
  auto* motion = gtk_event_controller_motion_new();
  g_signal_connect(motion, "motion", G_CALLBACK(pointerMoved), this);
  connect(motion, "leave", [this] { highlight(std::nullopt); });
  gtk_widget_add_controller(area_, motion);
}

ChartStyle HistoryChart::style() const {
  auto* manager = adw_style_manager_get_default();
  const int width = gtk_widget_get_width(area_);
  return {.width = static_cast<double>(width > 0 ? width : likelyWidth),
          .height = static_cast<double>(gtk_widget_get_height(area_)),
          .scale = static_cast<double>(gtk_widget_get_scale_factor(area_)),
          .dark = adw_style_manager_get_dark(manager) != FALSE,
          .highContrast = adw_style_manager_get_high_contrast(manager) != FALSE,
          .rightToLeft = gtk_widget_get_direction(area_) == GTK_TEXT_DIR_RTL,
          .textScale = textScale(area_),
          .highlighted = highlighted_,
          .hasFigures = false,
          .hasGround = false};
}

const platform::Typesetter& HistoryChart::typesetter() {
  if (!typesetter_) typesetter_ = platform::systemTypesetter();
  return *typesetter_;
}

void HistoryChart::show(ChartModel model) {
  model_ = std::move(model);
  highlighted_.reset();
  fitHeight();
  say();
  gtk_widget_queue_draw(area_);
}

void HistoryChart::fitHeight() {
  const auto height = std::ceil(idealChartHeight(model_, style(), typesetter()));
  gtk_drawing_area_set_content_height(GTK_DRAWING_AREA(area_), static_cast<int>(height));
}

void HistoryChart::highlight(std::optional<std::size_t> bar) {
  if (bar == highlighted_) return;
  highlighted_ = bar;
  say();
  gtk_widget_queue_draw(area_);
}

void HistoryChart::say() const {
  const bool isOne = highlighted_ && *highlighted_ < model_.bars.size();
  std::string phrase = isOne ? model_.bars[*highlighted_].phrase : model_.title;
  if (!isOne)
    for (const auto& part : {model_.total, model_.mean})
      if (!part.empty()) phrase += ", " + part;
  setAccessibleLabel(area_, phrase);
}

bool HistoryChart::moveTo(unsigned key) {
  if (model_.bars.empty()) return false;
  const auto last = model_.bars.size() - 1;
  const bool mirrored = gtk_widget_get_direction(area_) == GTK_TEXT_DIR_RTL;
  const auto back = mirrored ? GDK_KEY_Right : GDK_KEY_Left;
  const auto on = mirrored ? GDK_KEY_Left : GDK_KEY_Right;
  if (key == GDK_KEY_Home) {
    highlight(0);
  } else if (key == GDK_KEY_End) {
    highlight(last);
  } else if (static_cast<int>(key) == back) {
    highlight(highlighted_ ? std::max<std::size_t>(*highlighted_, 1) - 1 : last);
  } else if (static_cast<int>(key) == on) {
    highlight(highlighted_ ? std::min(*highlighted_ + 1, last) : last);
  } else {
    return false;
  }
  return true;
}

void HistoryChart::draw(GtkDrawingArea*, cairo_t* context, int, int, gpointer chart) {
  auto* self = static_cast<HistoryChart*>(chart);
  platform::paint(layOutChart(self->model_, self->style(), self->typesetter()), context);
}

gboolean HistoryChart::keyPressed(GtkEventControllerKey*, guint key, guint, GdkModifierType,
                                  gpointer chart) {
  return static_cast<HistoryChart*>(chart)->moveTo(key) ? TRUE : FALSE;
}

void HistoryChart::pointerMoved(GtkEventControllerMotion*, double x, double, gpointer chart) {
  auto* self = static_cast<HistoryChart*>(chart);
  self->highlight(barAt(self->model_, self->style(), x));
}

}  // namespace companion::window
