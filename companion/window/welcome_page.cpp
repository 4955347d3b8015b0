#include "companion/window/welcome_page.hpp"

#include "companion/window/client_steps.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedString;

namespace {

GtkWidget* wrappedLabel(const std::string& text, const char* cssClass) {
  GtkWidget* label = gtk_label_new(text.c_str());
  gtk_label_set_wrap(GTK_LABEL(label), TRUE);
  gtk_label_set_justify(GTK_LABEL(label), GTK_JUSTIFY_CENTER);
  if (cssClass != nullptr) gtk_widget_add_css_class(label, cssClass);
  return label;
}

std::string pathOf(GFile* file) {
  const GText path(g_file_get_path(file));
  return path ? path.get() : "";
}

/// One file that is dropped on the widget, whether it comes alone or in a list.
void acceptFile(GtkWidget* widget, Session& session) {
  auto* target = gtk_drop_target_new(G_TYPE_INVALID, GDK_ACTION_COPY);
  GType types[] = {GDK_TYPE_FILE_LIST, G_TYPE_FILE};
  gtk_drop_target_set_gtypes(target, types, G_N_ELEMENTS(types));
  g_signal_connect(target, "drop",
                   G_CALLBACK(+[](GtkDropTarget*, const GValue* value, double, double,
                                  gpointer data) -> gboolean {
                     GFile* file = nullptr;
                     if (G_VALUE_HOLDS(value, G_TYPE_FILE)) {
                       file = G_FILE(g_value_get_object(value));
                     } else if (const auto* list = static_cast<GSList*>(g_value_get_boxed(value))) {
                       file = G_FILE(list->data);
                     }
                     if (file == nullptr) return FALSE;
                     static_cast<Session*>(data)->takeOverClientFile(pathOf(file));
                     return TRUE;
                   }),
                   &session);
  gtk_widget_add_controller(widget, GTK_EVENT_CONTROLLER(target));
}

}  // namespace

WelcomePage::WelcomePage(Session& session) : session_(session), page_(adw_preferences_page_new()) {
  auto* page = ADW_PREFERENCES_PAGE(page_);
  adw_preferences_page_add(page, makeHero());
  adw_preferences_page_add(page, makeClientGroup());
  adw_preferences_page_add(page, makeSignInGroup());
  acceptFile(page_, session_);
  gtk_widget_add_css_class(page_, "dropzone");
  picture_.draw("medium");
}

AdwPreferencesGroup* WelcomePage::makeHero() {
  auto* group = preferencesGroup("", "");
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 12);
  setAccessibleLabel(picture_.widget(), localizedString("The widget with made-up figures"));
  gtk_box_append(GTK_BOX(box), picture_.widget());
  gtk_box_append(GTK_BOX(box),
                 wrappedLabel(localizedString("Your AdSense earnings on the desktop"), "title-1"));
  gtk_box_append(
      GTK_BOX(box),
      wrappedLabel(localizedString("Today and the month against your goals, at a glance. Velmora "
                                   "only reads, and your figures stay on this computer."),
                   nullptr));
  adw_preferences_group_add(group, box);
  return group;
}

AdwPreferencesGroup* WelcomePage::makeClientGroup() {
  auto* group = preferencesGroup(
      localizedString("Client File"),
      localizedString("Google gives your figures only to a client of your own. It is a small file "
                      "that you make once."));
  steps_ = makeClientSteps();
  adw_preferences_group_add(group, steps_);
  fileIcon_ = gtk_image_new();
  fileRow_ = FoldingRow(fileIcon_, localizedString("Your client file"),
                        textButton(localizedString("_Choose File…"), [this] { chooseFile(); }));
  adw_preferences_group_add(group, fileRow_.row);
  return group;
}

AdwPreferencesGroup* WelcomePage::makeSignInGroup() {
  auto* group = preferencesGroup("", "");
  signInButton_ = textButton(localizedString("_Sign In"), [this] { session_.signIn(); });
  gtk_widget_add_css_class(signInButton_, "pill");
  gtk_widget_add_css_class(signInButton_, "suggested-action");
  gtk_widget_set_halign(signInButton_, GTK_ALIGN_CENTER);
  adw_preferences_group_add(group, signInButton_);
  return group;
}

void WelcomePage::update(const State& state) {
  const bool hasClient = state.status.client.has_value();
  const bool failed = !state.clientFileError.empty();
  fileRow_.setSubtitle(clientFileText(state));
  gtk_image_set_from_icon_name(GTK_IMAGE(fileIcon_), failed      ? "dialog-warning-symbolic"
                                                     : hasClient ? "emblem-ok-symbolic"
                                                                 : "text-x-generic-symbolic");
  (failed ? gtk_widget_add_css_class : gtk_widget_remove_css_class)(fileRow_.row, "refused");
  gtk_widget_set_sensitive(signInButton_, hasClient);
  // What became of a file is told where the eye is led next.
  if (!isFirst_ && failed && state.clientFileError != shownError_)
    gtk_widget_grab_focus(fileRow_.row);
  if (!isFirst_ && hasClient && !hadClient_) gtk_widget_grab_focus(signInButton_);
  shownError_ = state.clientFileError;
  hadClient_ = hasClient;
  if (isFirst_ || hasClient) adw_expander_row_set_expanded(ADW_EXPANDER_ROW(steps_), !hasClient);
  isFirst_ = false;
}

void WelcomePage::chooseFile() {
  auto* chooser = gtk_file_chooser_native_new(localizedString("Choose a client file").c_str(),
                                              GTK_WINDOW(gtk_widget_get_root(page_)),
                                              GTK_FILE_CHOOSER_ACTION_OPEN, nullptr, nullptr);
  const Reference<GtkFileFilter> filter(gtk_file_filter_new());
  gtk_file_filter_set_name(filter.get(), localizedString("JSON files").c_str());
  gtk_file_filter_add_pattern(filter.get(), "*.json");
  gtk_file_chooser_add_filter(GTK_FILE_CHOOSER(chooser), filter.get());
  gtk_native_dialog_set_modal(GTK_NATIVE_DIALOG(chooser), TRUE);
  g_signal_connect(
      chooser, "response", G_CALLBACK(+[](GtkNativeDialog* dialog, int response, gpointer data) {
        const Reference<GtkNativeDialog> owned(dialog);
        if (response != GTK_RESPONSE_ACCEPT) return;
        const Reference<GFile> file(gtk_file_chooser_get_file(GTK_FILE_CHOOSER(dialog)));
        if (file) static_cast<Session*>(data)->takeOverClientFile(pathOf(file.get()));
      }),
      &session_);
  gtk_native_dialog_show(GTK_NATIVE_DIALOG(chooser));
}

}  // namespace companion::window
