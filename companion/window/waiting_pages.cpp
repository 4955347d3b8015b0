#include "companion/window/waiting_pages.hpp"

#include "companion/window/status_page.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedString;

GtkWidget* makeLockedPage(Session& session) {
  GtkWidget* unlock =
      pill(textButton(localizedString("_Unlock…"), [&session] { session.unlockKeyring(); }), true);
  GtkWidget* page =
      statusPage("changes-prevent-symbolic", localizedString("Your Keyring Is Locked"), {unlock});
  setStatusDescription(page, localizedString("The sign-in and your goals are kept there."));
  return page;
}

GtkWidget* makeNoKeyringPage(Session& session) {
  GtkWidget* again =
      pill(textButton(localizedString("_Try Again"), [&session] { session.load(); }), true);
  GtkWidget* page =
      statusPage("dialog-warning-symbolic", localizedString("No Keyring Can Be Reached"), {again});
  setStatusDescription(
      page, localizedString("The sign-in and your goals are kept there. Start one, such as GNOME "
                            "Keyring, then try again."));
  return page;
}

BusyPage::BusyPage(Page page, const std::string& title)
    : page_(page),
      spinner_(largeSpinner(title.empty() ? localizedString("Loading") : title)),
      widget_(gtk_box_new(GTK_ORIENTATION_VERTICAL, 18)) {
  gtk_widget_set_valign(widget_, GTK_ALIGN_CENTER);
  gtk_widget_set_halign(widget_, GTK_ALIGN_CENTER);
  gtk_box_append(GTK_BOX(widget_), spinner_);
  if (title.empty()) return;
  GtkWidget* label = gtk_label_new(title.c_str());
  gtk_widget_add_css_class(label, "title-2");
  gtk_box_append(GTK_BOX(widget_), label);
}

void BusyPage::update(const State& state) {
  gtk_spinner_set_spinning(GTK_SPINNER(spinner_), pageFor(state) == page_ ? TRUE : FALSE);
}

}  // namespace companion::window
