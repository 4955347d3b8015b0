#include "companion/window/account_view.hpp"

#include "companion/window/client_file_input.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedString;

AccountView::AccountView(Session& session)
    : session_(session),
      page_(adw_preferences_page_new()),
      message_(session),
      goals_(session),
      fileProblem_(session) {
  auto* page = ADW_PREFERENCES_PAGE(page_);
  adw_preferences_page_add(page, message_.group());
  adw_preferences_page_add(page, makeAccount());
  adw_preferences_page_add(page, goals_.group());
  adw_preferences_page_add(page, news_.group());
  adw_preferences_page_add(page, makeClientFile());
  adw_preferences_page_add(page, fileProblem_.group());
  acceptClientFile(page_, session_);
}

AdwPreferencesGroup* AccountView::makeAccount() {
  auto* group = preferencesGroup(localizedString("Account"), "");
  account_ = FoldingRow(gtk_image_new_from_icon_name("avatar-default-symbolic"), "",
                        textButton(localizedString("Sign _Out…"), [this] { askToSignOut(); }));
  adw_preferences_group_add(group, account_.row);
  return group;
}

AdwPreferencesGroup* AccountView::makeClientFile() {
  auto* group = preferencesGroup(localizedString("Client File"), "");
  GtkWidget* choose = textButton(localizedString("_Choose Another File…"), [] {});
  gtk_actionable_set_action_name(GTK_ACTIONABLE(choose), "win.choose-file");
  clientFile_ = FoldingRow(gtk_image_new_from_icon_name("text-x-generic-symbolic"),
                           localizedString("Your client file"), choose);
  adw_preferences_group_add(group, clientFile_.row);
  return group;
}

void AccountView::update(const State& state) {
  const auto who = accountText(state);
  const auto id = accountId(state);
  account_.setTitle(who.empty() ? localizedString("Signed in") : who);
  account_.setSubtitle(id == who ? "" : id);
  message_.update(messageOf(state));
  goals_.update(state);
  clientFile_.setSubtitle(clientFileText(state));
  fileProblem_.update(state.clientFileProblem ? std::vector{*state.clientFileProblem}
                                              : std::vector<Notice>{});
}

void AccountView::askToSignOut() {
  GtkWidget* dialog = adw_message_dialog_new(
      GTK_WINDOW(gtk_widget_get_root(page_)), localizedString("Sign Out?").c_str(),
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
