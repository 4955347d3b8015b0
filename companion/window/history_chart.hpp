#pragma once

#include <memory>
#include <optional>

#include "companion/history/chart.hpp"
#include "companion/window/widgets.hpp"
#include "platform/views/typesetter.hpp"

namespace companion::window {

/// The chart of the days on the screen. The day under the pointer, or chosen with the arrow keys,
/// tells its figures; a screen reader hears them, too.
class HistoryChart {
 public:
  HistoryChart();
  HistoryChart(const HistoryChart&) = delete;
  HistoryChart& operator=(const HistoryChart&) = delete;

  [[nodiscard]] GtkWidget* widget() const { return area_; }
  void show(ChartModel model);

 private:
  void listen();
  [[nodiscard]] ChartStyle style() const;
  [[nodiscard]] const platform::Typesetter& typesetter();
  void fitHeight();
  void highlight(std::optional<std::size_t> bar);
  void say() const;
  bool moveTo(unsigned key);
  static void draw(GtkDrawingArea*, cairo_t* context, int, int, gpointer chart);
  static gboolean keyPressed(GtkEventControllerKey*, guint key, guint, GdkModifierType,
                             gpointer chart);
  static void pointerMoved(GtkEventControllerMotion*, double x, double, gpointer chart);

  GtkWidget* area_;
  ChartModel model_;
  std::optional<std::size_t> highlighted_;
  std::unique_ptr<platform::Typesetter> typesetter_;
};

}  // namespace companion::window
