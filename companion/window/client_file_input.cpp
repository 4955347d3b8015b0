#include "companion/window/client_file_input.hpp"

#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedString;

namespace {

void takeOver(GFile* file, Session& session) {
  const GText path(g_file_get_path(file));
  session.takeOverClientFile(path ? path.get() : "");
}

gboolean dropped(GtkDropTarget*, const GValue* value, double, double, gpointer session) {
  GFile* file = nullptr;
  if (G_VALUE_HOLDS(value, G_TYPE_FILE)) {
    file = G_FILE(g_value_get_object(value));
  } else if (const auto* list = static_cast<GdkFileList*>(g_value_get_boxed(value))) {
    const platform::Owned<GSList, g_slist_free> files(
        gdk_file_list_get_files(const_cast<GdkFileList*>(list)));
    if (files) file = G_FILE(files->data);
  }
  if (file == nullptr) return FALSE;
  takeOver(file, *static_cast<Session*>(session));
  return TRUE;
}

void answered(GtkNativeDialog* dialog, int response, gpointer session) {
  const Reference<GtkNativeDialog> owned(dialog);
  if (response != GTK_RESPONSE_ACCEPT) return;
  const Reference<GFile> file(gtk_file_chooser_get_file(GTK_FILE_CHOOSER(dialog)));
  if (file) takeOver(file.get(), *static_cast<Session*>(session));
}

void addFilter(GtkFileChooser* chooser, const std::string& name, const char* pattern) {
  const Reference<GtkFileFilter> filter(gtk_file_filter_new());
  gtk_file_filter_set_name(filter.get(), name.c_str());
  gtk_file_filter_add_pattern(filter.get(), pattern);
  gtk_file_chooser_add_filter(chooser, filter.get());
}

/// Where a browser puts the file.
void startInDownloads(GtkFileChooser* chooser) {
  const char* folder = g_get_user_special_dir(G_USER_DIRECTORY_DOWNLOAD);
  if (folder == nullptr || !g_file_test(folder, G_FILE_TEST_IS_DIR)) folder = g_get_home_dir();
  const Reference<GFile> file(g_file_new_for_path(folder));
  gtk_file_chooser_set_current_folder(chooser, file.get(), nullptr);
}

}  // namespace

void chooseClientFile(GtkWindow* window, Session& session) {
  auto* chooser =
      gtk_file_chooser_native_new(localizedString("Choose a client file").c_str(), window,
                                  GTK_FILE_CHOOSER_ACTION_OPEN, nullptr, nullptr);
  addFilter(GTK_FILE_CHOOSER(chooser), localizedString("JSON files"), "*.json");
  addFilter(GTK_FILE_CHOOSER(chooser), localizedString("All files"), "*");
  startInDownloads(GTK_FILE_CHOOSER(chooser));
  gtk_native_dialog_set_modal(GTK_NATIVE_DIALOG(chooser), TRUE);
  g_signal_connect(chooser, "response", G_CALLBACK(answered), &session);
  gtk_native_dialog_show(GTK_NATIVE_DIALOG(chooser));
}

void acceptClientFile(GtkWidget* widget, Session& session) {
  auto* target = gtk_drop_target_new(G_TYPE_INVALID, GDK_ACTION_COPY);
  GType types[] = {GDK_TYPE_FILE_LIST, G_TYPE_FILE};
  gtk_drop_target_set_gtypes(target, types, G_N_ELEMENTS(types));
  g_signal_connect(target, "drop", G_CALLBACK(dropped), &session);
  gtk_widget_add_controller(widget, GTK_EVENT_CONTROLLER(target));
  gtk_widget_add_css_class(widget, "dropzone");
}

}  // namespace companion::window
