#include "companion/window/goal_tile.hpp"

#include "VelmoraWidget/CurrencyFormat.hpp"
#include "companion/window/model.hpp"
#include "companion/window/ring.hpp"

namespace companion::window {

namespace {

constexpr int ringDiameter = 56;
constexpr const char* unknown = "—";

GtkWidget* line(GtkWidget* box, const char* cssClass) {
  GtkWidget* label = gtk_label_new(unknown);
  gtk_label_set_xalign(GTK_LABEL(label), 0);
  gtk_label_set_wrap(GTK_LABEL(label), TRUE);
  gtk_label_set_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
  gtk_widget_add_css_class(label, cssClass);
  gtk_widget_add_css_class(label, "numeric");
  gtk_box_append(GTK_BOX(box), label);
  return label;
}

}  // namespace

GoalTile::GoalTile(const std::string& title)
    : tile(gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 14)),
      title_(title),
      ring_(makeRing(ringDiameter)) {
  gtk_widget_add_css_class(tile, "card");
  gtk_widget_add_css_class(tile, "tile");
  gtk_box_append(GTK_BOX(tile), ring_);
  GtkWidget* texts = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_widget_set_valign(texts, GTK_ALIGN_CENTER);
  gtk_widget_set_hexpand(texts, TRUE);
  GtkWidget* heading = line(texts, "caption-heading");
  gtk_label_set_text(GTK_LABEL(heading), title.c_str());
  gtk_widget_add_css_class(heading, "dim-label");
  amount_ = line(texts, "title-2");
  progress_ = line(texts, "caption");
  gtk_box_append(GTK_BOX(tile), texts);
}

void GoalTile::clear() const {
  setShare(ring_, 0);
  gtk_label_set_text(GTK_LABEL(amount_), unknown);
  gtk_label_set_text(GTK_LABEL(progress_), "");
  setAccessibleLabel(tile, title_);
}

void GoalTile::show(double earned, double goal, const std::string& currency) const {
  const auto amount = velmora::formatCurrency(earned, currency);
  const auto progress = progressText(earned, goal, currency);
  setShare(ring_, shareOf(earned, goal));
  gtk_label_set_text(GTK_LABEL(amount_), amount.c_str());
  gtk_label_set_text(GTK_LABEL(progress_), progress.c_str());
  std::string spoken = title_;
  for (const auto& part : {amount, progress}) spoken += ", " + part;
  setAccessibleLabel(tile, spoken);
}

}  // namespace companion::window
