#include "companion/window/sign_in_page.hpp"

#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedString;

namespace {

GtkWidget* statusPage(const char* icon, const std::string& title) {
  GtkWidget* page = adw_status_page_new();
  adw_status_page_set_icon_name(ADW_STATUS_PAGE(page), icon);
  adw_status_page_set_title(ADW_STATUS_PAGE(page), escaped(title).c_str());
  gtk_widget_add_css_class(page, "compact");
  return page;
}

void setDescription(GtkWidget* page, const std::string& text) {
  adw_status_page_set_description(ADW_STATUS_PAGE(page), escaped(text).c_str());
}

GtkWidget* pill(GtkWidget* button, bool isSuggested) {
  gtk_widget_add_css_class(button, "pill");
  if (isSuggested) gtk_widget_add_css_class(button, "suggested-action");
  return button;
}

/// All as wide as the widest.
GtkWidget* column(std::initializer_list<GtkWidget*> children) {
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 12);
  gtk_widget_set_halign(box, GTK_ALIGN_CENTER);
  for (auto* child : children) gtk_box_append(GTK_BOX(box), child);
  return box;
}

std::string descriptionFor(const State& state) {
  if (state.signIn == SignInPhase::preparing) return localizedString("One moment…");
  if (state.signIn == SignInPhase::finishing)
    return localizedString("Your answer is here. The sign-in is being completed.");
  if (!state.browserOpened)
    return localizedString(
        "No browser could be opened. Copy the address and open it in one on "
        "this computer.");
  return localizedString(
      "Choose your Google account there and allow Velmora to see your AdSense "
      "data. If Google warns that it has not verified the app: it is your own. "
      "Choose “Advanced” and go on.");
}

}  // namespace

SignInPage::SignInPage(Session& session)
    : session_(session),
      page_(statusPage("web-browser-symbolic", localizedString("Continue in Your Browser"))),
      spinner_(gtk_spinner_new()),
      again_(pill(textButton(localizedString("_Open Browser Again"),
                             [this] { session_.openBrowserAgain(); }),
                  false)),
      copy_(pill(textButton(localizedString("Copy _Address"),
                            [this] {
                              gdk_clipboard_set_text(gtk_widget_get_clipboard(page_),
                                                     session_.state().address.c_str());
                              session_.say(localizedString("The address is copied."));
                            }),
                 false)),
      cancel_(pill(textButton(localizedString("_Cancel"), [this] { session_.cancelSignIn(); }),
                   false)) {
  gtk_widget_set_size_request(spinner_, 32, 32);
  setAccessibleLabel(spinner_, localizedString("Waiting for the browser"));
  adw_status_page_set_child(ADW_STATUS_PAGE(page_), column({spinner_, again_, copy_, cancel_}));
}

void SignInPage::update(const State& state) {
  const bool shown = pageFor(state) == Page::signingIn;
  const bool waits = state.signIn == SignInPhase::waiting;
  gtk_spinner_set_spinning(GTK_SPINNER(spinner_), shown);
  if (!shown) return;
  setDescription(page_, descriptionFor(state));
  gtk_widget_set_sensitive(again_, waits);
  gtk_widget_set_sensitive(copy_, waits);
  gtk_widget_set_sensitive(cancel_, state.signIn != SignInPhase::finishing);
}

SignInFailedPage::SignInFailedPage(Session& session)
    : page_(statusPage("dialog-warning-symbolic", localizedString("Not Signed In"))) {
  GtkWidget* again =
      pill(textButton(localizedString("_Try Again"), [&session] { session.signIn(); }), true);
  GtkWidget* back =
      pill(textButton(localizedString("_Back"), [&session] { session.dismissFailure(); }), false);
  adw_status_page_set_child(ADW_STATUS_PAGE(page_), column({again, back}));
}

void SignInFailedPage::update(const State& state) { setDescription(page_, state.signInError); }

GtkWidget* makeLockedPage(Session& session) {
  GtkWidget* page =
      statusPage("changes-prevent-symbolic", localizedString("Your Keyring Is Locked"));
  setDescription(page, localizedString("The sign-in and your goals are kept there."));
  GtkWidget* unlock =
      pill(textButton(localizedString("_Unlock…"), [&session] { session.unlockKeyring(); }), true);
  adw_status_page_set_child(ADW_STATUS_PAGE(page), column({unlock}));
  return page;
}

}  // namespace companion::window
