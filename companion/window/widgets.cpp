#include "companion/window/widgets.hpp"

#include <memory>

namespace companion::window {

namespace {

using Handler = std::function<void()>;

/// Connected swapped, so that the handler comes first and the signal's own arguments are ignored.
void callHandler(gpointer handler) { (*static_cast<Handler*>(handler))(); }

void deleteHandler(gpointer handler) {
  const std::unique_ptr<Handler> owned(static_cast<Handler*>(handler));
}

}  // namespace

void connect(gpointer instance, const char* signal, Handler handler) {
  g_signal_connect_data(
      instance, signal, G_CALLBACK(callHandler), new Handler(std::move(handler)),
      [](gpointer data, GClosure*) { deleteHandler(data); }, G_CONNECT_SWAPPED);
}

void connectWhileAlive(gpointer instance, const char* signal, GtkWidget* widget, Handler handler) {
  auto* closure = g_cclosure_new_swap(G_CALLBACK(callHandler), new Handler(std::move(handler)),
                                      [](gpointer data, GClosure*) { deleteHandler(data); });
  g_object_watch_closure(G_OBJECT(widget), closure);
  g_signal_connect_closure(instance, signal, closure, FALSE);
}

std::string withoutMnemonic(std::string label) {
  std::erase(label, '_');
  return label;
}

std::string escaped(const std::string& text) {
  const GText markup(g_markup_escape_text(text.c_str(), -1));
  return markup.get();
}

GtkWidget* textButton(const std::string& label, Handler clicked) {
  GtkWidget* button = gtk_button_new_with_mnemonic(label.c_str());
  // Else the name is said twice, once with the underscore.
  gtk_accessible_reset_relation(GTK_ACCESSIBLE(button), GTK_ACCESSIBLE_RELATION_LABELLED_BY);
  setAccessibleLabel(button, withoutMnemonic(label));
  gtk_widget_set_valign(button, GTK_ALIGN_CENTER);
  connect(button, "clicked", std::move(clicked));
  return button;
}

GtkWidget* actionRow(const std::string& title, const std::string& subtitle) {
  GtkWidget* row = adw_action_row_new();
  adw_preferences_row_set_use_markup(ADW_PREFERENCES_ROW(row), FALSE);
  adw_preferences_row_set_title(ADW_PREFERENCES_ROW(row), title.c_str());
  setSubtitle(row, subtitle);
  return row;
}

void setSubtitle(GtkWidget* row, const std::string& subtitle) {
  const char* present = adw_action_row_get_subtitle(ADW_ACTION_ROW(row));
  if (subtitle != (present == nullptr ? "" : present))
    adw_action_row_set_subtitle(ADW_ACTION_ROW(row), subtitle.c_str());
}

AdwPreferencesGroup* preferencesGroup(const std::string& title, const std::string& description) {
  auto* group = ADW_PREFERENCES_GROUP(adw_preferences_group_new());
  adw_preferences_group_set_title(group, escaped(title).c_str());
  adw_preferences_group_set_description(group, escaped(description).c_str());
  return group;
}

void hideOthers(GtkWidget* stack, GtkWidget* shown) {
  for (auto* page = gtk_widget_get_first_child(stack); page != nullptr;
       page = gtk_widget_get_next_sibling(page))
    gtk_accessible_update_state(GTK_ACCESSIBLE(page), GTK_ACCESSIBLE_STATE_HIDDEN, page != shown,
                                -1);
}

void setAccessibleLabel(GtkWidget* widget, const std::string& label) {
  gtk_accessible_update_property(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                 label.c_str(), -1);
}

void setAccessibleDescription(GtkWidget* widget, const std::string& description) {
  gtk_accessible_update_property(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_PROPERTY_DESCRIPTION,
                                 description.c_str(), -1);
}

}  // namespace companion::window
