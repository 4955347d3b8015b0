#include "companion/window/status_page.hpp"

namespace companion::window {

namespace {

constexpr int spinnerSize = 32;

}  // namespace

GtkWidget* statusPage(const char* icon, const std::string& title,
                      std::initializer_list<GtkWidget*> children) {
  GtkWidget* page = adw_status_page_new();
  adw_status_page_set_icon_name(ADW_STATUS_PAGE(page), icon);
  gtk_widget_add_css_class(page, "compact");
  setStatusTitle(page, title);
  // All as wide as the widest.
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 12);
  gtk_widget_set_halign(box, GTK_ALIGN_CENTER);
  for (auto* child : children) gtk_box_append(GTK_BOX(box), child);
  adw_status_page_set_child(ADW_STATUS_PAGE(page), box);
  return page;
}

void setStatusTitle(GtkWidget* page, const std::string& title) {
  adw_status_page_set_title(ADW_STATUS_PAGE(page), escaped(title).c_str());
  setAccessibleLabel(page, title);
}

void setStatusDescription(GtkWidget* page, const std::string& text) {
  adw_status_page_set_description(ADW_STATUS_PAGE(page), escaped(text).c_str());
  setAccessibleDescription(page, text);
}

GtkWidget* pill(GtkWidget* button, bool isSuggested) {
  gtk_widget_add_css_class(button, "pill");
  if (isSuggested) gtk_widget_add_css_class(button, "suggested-action");
  return button;
}

GtkWidget* largeSpinner(const std::string& label) {
  GtkWidget* spinner = gtk_spinner_new();
  gtk_widget_set_size_request(spinner, spinnerSize, spinnerSize);
  setAccessibleLabel(spinner, label);
  return spinner;
}

}  // namespace companion::window
