#include "companion/window/folding_row.hpp"

#include "companion/window/folding_layout.hpp"

namespace companion::window {

namespace {

GtkWidget* textLabel(const char* cssClass) {
  GtkWidget* label = gtk_label_new("");
  gtk_label_set_wrap(GTK_LABEL(label), TRUE);
  gtk_label_set_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
  gtk_label_set_xalign(GTK_LABEL(label), 0);
  gtk_widget_add_css_class(label, cssClass);
  return label;
}

}  // namespace

/// In the shape of the library's own rows, whose styles it takes on.
FoldingRow::FoldingRow(GtkWidget* sign, const std::string& title, GtkWidget* end)
    : row(adw_preferences_row_new()),
      title_(textLabel("title")),
      subtitle_(textLabel("subtitle")),
      details_(Details::make()) {
  GtkWidget* texts = gtk_box_new(GTK_ORIENTATION_VERTICAL, 3);
  gtk_widget_set_valign(texts, GTK_ALIGN_CENTER);
  gtk_widget_add_css_class(texts, "title");
  gtk_box_append(GTK_BOX(texts), title_);
  gtk_box_append(GTK_BOX(texts), subtitle_);
  gtk_box_append(GTK_BOX(texts), details_.widget());
  GtkWidget* fold = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
  gtk_widget_set_layout_manager(fold, makeFoldingLayout());
  gtk_widget_set_hexpand(fold, TRUE);
  gtk_box_append(GTK_BOX(fold), texts);
  gtk_box_append(GTK_BOX(fold), end);
  GtkWidget* header = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 12);
  gtk_widget_add_css_class(header, "header");
  gtk_widget_add_css_class(header, "folding");
  if (sign != nullptr) {
    gtk_widget_add_css_class(sign, "sign");
    gtk_widget_set_valign(sign, GTK_ALIGN_CENTER);
    gtk_box_append(GTK_BOX(header), sign);
  }
  gtk_box_append(GTK_BOX(header), fold);
  gtk_list_box_row_set_child(GTK_LIST_BOX_ROW(row), header);
  gtk_list_box_row_set_activatable(GTK_LIST_BOX_ROW(row), FALSE);
  adw_preferences_row_set_use_markup(ADW_PREFERENCES_ROW(row), FALSE);
  setTitle(title);
  setSubtitle("");
}

void FoldingRow::setTitle(const std::string& title) const {
  adw_preferences_row_set_title(ADW_PREFERENCES_ROW(row), title.c_str());
  gtk_label_set_text(GTK_LABEL(title_), title.c_str());
  setAccessibleLabel(row, title);
}

void FoldingRow::setSubtitle(const std::string& subtitle) const {
  if (subtitle == gtk_label_get_text(GTK_LABEL(subtitle_)) && !subtitle.empty()) return;
  gtk_label_set_text(GTK_LABEL(subtitle_), subtitle.c_str());
  gtk_widget_set_visible(subtitle_, !subtitle.empty());
  setAccessibleDescription(row, subtitle);
}

}  // namespace companion::window
