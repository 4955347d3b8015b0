#include "companion/window/account_group.hpp"

#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedString;

AccountGroup::AccountGroup(Session& session)
    : session_(session),
      group_(preferencesGroup(localizedString("Account"), "")),
      row_(gtk_image_new_from_icon_name("avatar-default-symbolic"), localizedString("Signed in"),
           textButton(localizedString("Sign _Out…"), [this] { askToSignOut(); })) {
  adw_preferences_group_add(group_, row_.row);
}

void AccountGroup::update(const State& state) { row_.setSubtitle(accountText(state)); }

void AccountGroup::askToSignOut() {
  GtkWidget* dialog = adw_message_dialog_new(
      GTK_WINDOW(gtk_widget_get_root(row_.row)), localizedString("Sign Out?").c_str(),
      localizedString("The sign-in is withdrawn at Google, and the account and its figures are "
                      "removed from this computer. Your goals and the client file stay.")
          .c_str());
  auto* message = ADW_MESSAGE_DIALOG(dialog);
  adw_message_dialog_add_response(message, "cancel", localizedString("_Cancel").c_str());
  adw_message_dialog_add_response(message, "sign-out", localizedString("Sign _Out").c_str());
  adw_message_dialog_set_response_appearance(message, "sign-out", ADW_RESPONSE_DESTRUCTIVE);
  adw_message_dialog_set_default_response(message, "cancel");
  adw_message_dialog_set_close_response(message, "cancel");
  connect(dialog, "response::sign-out", [this] { session_.signOut(); });
  gtk_window_present(GTK_WINDOW(dialog));
}

}  // namespace companion::window
