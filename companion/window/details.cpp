#include "companion/window/details.hpp"

#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedString;

namespace {

constexpr const char* folded = "pan-end-symbolic";
constexpr const char* unfolded = "pan-down-symbolic";

GtkWidget* copyButton(GtkWidget* label) {
  GtkWidget* button = gtk_button_new_from_icon_name("edit-copy-symbolic");
  gtk_widget_set_valign(button, GTK_ALIGN_START);
  gtk_widget_add_css_class(button, "flat");
  gtk_widget_set_tooltip_text(button, localizedString("Copy").c_str());
  setAccessibleLabel(button, localizedString("Copy"));
  connect(button, "clicked", [button, label] {
    gdk_clipboard_set_text(gtk_widget_get_clipboard(button), gtk_label_get_text(GTK_LABEL(label)));
  });
  return button;
}

/// Shows the text, and hides it again.
GtkWidget* foldingButton(GtkWidget* text) {
  GtkWidget* content = adw_button_content_new();
  const auto label = localizedString("_Details");
  adw_button_content_set_label(ADW_BUTTON_CONTENT(content), label.c_str());
  adw_button_content_set_use_underline(ADW_BUTTON_CONTENT(content), TRUE);
  adw_button_content_set_icon_name(ADW_BUTTON_CONTENT(content), folded);
  GtkWidget* button = gtk_button_new();
  gtk_button_set_child(GTK_BUTTON(button), content);
  setAccessibleLabel(button, withoutMnemonic(label));
  gtk_widget_set_halign(button, GTK_ALIGN_START);
  gtk_widget_add_css_class(button, "flat");
  gtk_widget_add_css_class(button, "details");
  connect(button, "clicked", [button, content, text] {
    const gboolean isShown = !gtk_widget_get_visible(text);
    gtk_widget_set_visible(text, isShown);
    adw_button_content_set_icon_name(ADW_BUTTON_CONTENT(content), isShown ? unfolded : folded);
    gtk_accessible_update_state(GTK_ACCESSIBLE(button), GTK_ACCESSIBLE_STATE_EXPANDED, isShown, -1);
  });
  return button;
}

}  // namespace

Details Details::make() {
  Details details;
  details.label_ = gtk_label_new("");
  auto* label = GTK_LABEL(details.label_);
  gtk_label_set_wrap(label, TRUE);
  gtk_label_set_wrap_mode(label, PANGO_WRAP_WORD_CHAR);
  gtk_label_set_xalign(label, 0);
  gtk_label_set_selectable(label, TRUE);
  gtk_widget_set_hexpand(details.label_, TRUE);
  gtk_widget_add_css_class(details.label_, "caption");
  gtk_widget_add_css_class(details.label_, "monospace");
  GtkWidget* text = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 6);
  gtk_box_append(GTK_BOX(text), details.label_);
  gtk_box_append(GTK_BOX(text), copyButton(details.label_));
  gtk_widget_set_visible(text, FALSE);
  details.box_ = gtk_box_new(GTK_ORIENTATION_VERTICAL, 6);
  gtk_box_append(GTK_BOX(details.box_), foldingButton(text));
  gtk_box_append(GTK_BOX(details.box_), text);
  gtk_widget_set_visible(details.box_, FALSE);
  return details;
}

void Details::setText(const std::string& text) const {
  gtk_label_set_text(GTK_LABEL(label_), text.c_str());
  gtk_widget_set_visible(box_, text.empty() ? FALSE : TRUE);
}

}  // namespace companion::window
