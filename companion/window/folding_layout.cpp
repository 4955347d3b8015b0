#include "companion/window/folding_layout.hpp"

#include <algorithm>

namespace {

struct FoldingLayout {
  GtkLayoutManager parent;
};

struct FoldingLayoutClass {
  GtkLayoutManagerClass parent;
};

G_DEFINE_TYPE(FoldingLayout, folding_layout, GTK_TYPE_LAYOUT_MANAGER)

constexpr int spacing = 12;
constexpr int rowSpacing = 6;

struct Size {
  int least = 0;
  int natural = 0;
};

Size measured(GtkWidget* child, GtkOrientation orientation, int forSize) {
  Size size;
  if (child != nullptr && gtk_widget_should_layout(child))
    gtk_widget_measure(child, orientation, forSize, &size.least, &size.natural, nullptr, nullptr);
  return size;
}

/// How the width is shared out; the end has its own line when it is folded.
struct Shares {
  int text = 0;
  int end = 0;
  bool isFolded = false;
};

Shares sharesOf(GtkWidget* widget, int width) {
  GtkWidget* text = gtk_widget_get_first_child(widget);
  const auto end = measured(gtk_widget_get_last_child(widget), GTK_ORIENTATION_HORIZONTAL, -1);
  if (end.natural == 0) return {width, 0, false};
  const auto wanted = measured(text, GTK_ORIENTATION_HORIZONTAL, -1).natural;
  const int left = width - end.natural - spacing;
  if (left < std::min(wanted, width / 2)) return {width, std::min(end.natural, width), true};
  return {left, end.natural, false};
}

void measureWidth(GtkWidget* widget, int* least, int* natural) {
  const auto text = measured(gtk_widget_get_first_child(widget), GTK_ORIENTATION_HORIZONTAL, -1);
  const auto end = measured(gtk_widget_get_last_child(widget), GTK_ORIENTATION_HORIZONTAL, -1);
  *least = std::max(text.least, end.least);
  *natural = std::max(*least, text.natural + (end.natural > 0 ? spacing + end.natural : 0));
}

void measure(GtkLayoutManager*, GtkWidget* widget, GtkOrientation orientation, int forSize,
             int* least, int* natural, int*, int*) {
  if (orientation == GTK_ORIENTATION_HORIZONTAL) return measureWidth(widget, least, natural);
  int width = forSize;
  if (width < 0) measureWidth(widget, least, &width);
  const auto shares = sharesOf(widget, width);
  const auto text =
      measured(gtk_widget_get_first_child(widget), GTK_ORIENTATION_VERTICAL, shares.text);
  const auto end =
      measured(gtk_widget_get_last_child(widget), GTK_ORIENTATION_VERTICAL, shares.end);
  *least = shares.isFolded ? text.least + rowSpacing + end.least : std::max(text.least, end.least);
  *natural = shares.isFolded ? text.natural + rowSpacing + end.natural
                             : std::max(text.natural, end.natural);
}

void allocate(GtkLayoutManager*, GtkWidget* widget, int width, int height, int baseline) {
  GtkWidget* text = gtk_widget_get_first_child(widget);
  GtkWidget* end = gtk_widget_get_last_child(widget);
  const auto shares = sharesOf(widget, width);
  const bool mirrored = gtk_widget_get_direction(widget) == GTK_TEXT_DIR_RTL;
  const int endHeight =
      shares.isFolded ? measured(end, GTK_ORIENTATION_VERTICAL, shares.end).natural : height;
  const int textHeight = shares.isFolded ? height - rowSpacing - endHeight : height;
  GtkAllocation place{mirrored ? width - shares.text : 0, 0, shares.text, textHeight};
  gtk_widget_size_allocate(text, &place, baseline);
  if (shares.end == 0) return;
  // On a line of its own it begins where the text begins.
  const bool atLeft = shares.isFolded != mirrored;
  place = {atLeft ? 0 : width - shares.end, height - endHeight, shares.end, endHeight};
  gtk_widget_size_allocate(end, &place, -1);
}

void folding_layout_class_init(FoldingLayoutClass* type) {
  auto* manager = GTK_LAYOUT_MANAGER_CLASS(type);
  manager->get_request_mode = [](GtkLayoutManager*, GtkWidget*) {
    return GTK_SIZE_REQUEST_HEIGHT_FOR_WIDTH;
  };
  manager->measure = measure;
  manager->allocate = allocate;
}

void folding_layout_init(FoldingLayout*) {}

}  // namespace

namespace companion::window {

GtkLayoutManager* makeFoldingLayout() {
  return GTK_LAYOUT_MANAGER(g_object_new(folding_layout_get_type(), nullptr));
}

}  // namespace companion::window
