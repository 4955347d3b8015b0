#include "companion/window/ring.hpp"

#include <algorithm>
#include <numbers>

namespace companion::window {

namespace {

constexpr double lineShare = 0.14;  // of the diameter
constexpr const char* shareKey = "velmora-share";

void draw(GtkDrawingArea* area, cairo_t* context, int width, int height, gpointer) {
  const double diameter = std::min(width, height);
  const double lineWidth = diameter * lineShare;
  const double radius = (diameter - lineWidth) / 2;
  const auto* share = static_cast<double*>(g_object_get_data(G_OBJECT(area), shareKey));
  GdkRGBA color;
  gtk_style_context_get_color(gtk_widget_get_style_context(GTK_WIDGET(area)), &color);
  cairo_set_line_width(context, lineWidth);
  cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
  cairo_translate(context, width / 2.0, height / 2.0);
  cairo_set_source_rgba(context, color.red, color.green, color.blue, 0.25);
  cairo_arc(context, 0, 0, radius, 0, 2 * std::numbers::pi);
  cairo_stroke(context);
  if (share == nullptr || *share <= 0) return;
  gdk_cairo_set_source_rgba(context, &color);
  const double start = -std::numbers::pi / 2;
  cairo_arc(context, 0, 0, radius, start, start + *share * 2 * std::numbers::pi);
  cairo_stroke(context);
}

}  // namespace

GtkWidget* makeRing(int diameter) {
  auto* ring = GTK_WIDGET(g_object_new(
      GTK_TYPE_DRAWING_AREA, "accessible-role", GTK_ACCESSIBLE_ROLE_PRESENTATION, "content-width",
      diameter, "content-height", diameter, "valign", GTK_ALIGN_CENTER, nullptr));
  gtk_widget_add_css_class(ring, "ring");
  gtk_drawing_area_set_draw_func(GTK_DRAWING_AREA(ring), draw, nullptr, nullptr);
  return ring;
}

void setShare(GtkWidget* ring, double share) {
  g_object_set_data_full(G_OBJECT(ring), shareKey, new double(share),
                         [](gpointer data) { delete static_cast<double*>(data); });
  (share < 1 ? gtk_widget_remove_css_class : gtk_widget_add_css_class)(ring, "reached");
  gtk_widget_queue_draw(ring);
}

}  // namespace companion::window
