#include "companion/window/sign_in_page.hpp"

#include "companion/window/remedy_button.hpp"
#include "companion/window/status_page.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedString;

namespace {

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

GtkWidget* copiedLabel() {
  GtkWidget* label = gtk_label_new(localizedString("The address is copied.").c_str());
  gtk_widget_add_css_class(label, "dim-label");
  gtk_widget_set_visible(label, FALSE);
  return label;
}

}  // namespace

SignInPage::SignInPage(Session& session)
    : session_(session),
      spinner_(largeSpinner(localizedString("Waiting for the browser"))),
      again_(pill(textButton(localizedString("_Open Browser Again"),
                             [this] { session_.openBrowserAgain(); }),
                  false)),
      copy_(pill(textButton(localizedString("Copy _Address"), [this] { copyAddress(); }), false)),
      copied_(copiedLabel()),
      cancel_(
          pill(textButton(localizedString("_Cancel"), [this] { session_.cancelSignIn(); }), false)),
      page_(statusPage("web-browser-symbolic", localizedString("Continue in Your Browser"),
                       {spinner_, again_, copy_, copied_, cancel_})) {
  // The page itself has the focus at first: a second Enter must not cancel.
  gtk_widget_set_focusable(page_, TRUE);
}

void SignInPage::copyAddress() {
  gdk_clipboard_set_text(gtk_widget_get_clipboard(page_), session_.state().address.c_str());
  gtk_widget_set_visible(copied_, TRUE);
}

void SignInPage::update(const State& state) {
  const bool isShown = pageFor(state) == Page::signingIn;
  const bool waits = state.signIn == SignInPhase::waiting;
  gtk_spinner_set_spinning(GTK_SPINNER(spinner_), isShown ? TRUE : FALSE);
  if (!waits) gtk_widget_set_visible(copied_, FALSE);
  if (!isShown) return;
  setStatusDescription(page_, descriptionFor(state));
  gtk_widget_set_sensitive(again_, waits);
  gtk_widget_set_sensitive(copy_, waits);
  gtk_widget_set_sensitive(cancel_, state.signIn != SignInPhase::finishing);
}

SignInFailedPage::SignInFailedPage(Session& session)
    : session_(session),
      help_(adw_bin_new()),
      again_(
          pill(textButton(localizedString("_Try Again"), [&session] { session.signIn(); }), false)),
      details_(Details::make()) {
  GtkWidget* back =
      pill(textButton(localizedString("_Back"), [&session] { session.dismissFailure(); }), false);
  page_ = statusPage("dialog-warning-symbolic", localizedString("Not Signed In"),
                     {help_, again_, back, details_.widget()});
}

void SignInFailedPage::update(const State& state) {
  if (pageFor(state) != Page::signInFailed || !state.signInFailure) return;
  const auto& failure = *state.signInFailure;
  setStatusTitle(page_, failure.title);
  setStatusDescription(page_, failure.advice);
  details_.setText(failure.details);
  const bool isOther = failure.remedy != Remedy::tryAgain && failure.remedy != Remedy::signIn;
  (isOther ? gtk_widget_remove_css_class : gtk_widget_add_css_class)(again_, "suggested-action");
  adw_bin_set_child(ADW_BIN(help_), nullptr);
  gtk_widget_set_visible(help_, isOther ? TRUE : FALSE);
  if (isOther)
    adw_bin_set_child(ADW_BIN(help_),
                      pill(makeRemedyButton(session_, failure.remedy, failure.page), true));
}

}  // namespace companion::window
