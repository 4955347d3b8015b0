#include "companion/window/welcome_page.hpp"

#include "companion/window/client_file_input.hpp"
#include "companion/window/client_steps.hpp"
#include "companion/window/status_page.hpp"
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

}  // namespace

WelcomePage::WelcomePage(Session& session)
    : session_(session),
      page_(adw_preferences_page_new()),
      message_(session),
      fileProblem_(session) {
  auto* page = ADW_PREFERENCES_PAGE(page_);
  gtk_widget_add_css_class(page_, "welcome");
  adw_preferences_page_add(page, message_.group());
  adw_preferences_page_add(page, makeHero());
  adw_preferences_page_add(page, makeClientGroup());
  adw_preferences_page_add(page, fileProblem_.group());
  adw_preferences_page_add(page, makeSignInGroup());
  acceptClientFile(page_, session_);
  picture_.draw(platform::WidgetFamily::systemMedium);
}

AdwPreferencesGroup* WelcomePage::makeHero() {
  auto* group = preferencesGroup("", "");
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 10);
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
      localizedString("Google shows your figures only to an app that you have registered. The "
                      "client file is its pass, and you make it once."));
  adw_preferences_group_add(group, makeClientSteps());
  fileIcon_ = gtk_image_new();
  choose_ = textButton(localizedString("_Choose File…"), [] {});
  gtk_actionable_set_action_name(GTK_ACTIONABLE(choose_), "win.choose-file");
  fileRow_ = FoldingRow(fileIcon_, localizedString("Your client file"), choose_);
  adw_preferences_group_add(group, fileRow_.row);
  return group;
}

AdwPreferencesGroup* WelcomePage::makeSignInGroup() {
  auto* group = preferencesGroup("", "");
  signInButton_ =
      pill(textButton(localizedString("_Sign In"), [this] { session_.signIn(); }), true);
  gtk_widget_set_halign(signInButton_, GTK_ALIGN_CENTER);
  adw_preferences_group_add(group, signInButton_);
  return group;
}

void WelcomePage::update(const State& state) {
  const bool hasClient = state.status.client.has_value();
  message_.update(messageOf(state));
  fileProblem_.update(state.clientFileProblem ? std::vector{*state.clientFileProblem}
                                              : std::vector<Notice>{});
  fileRow_.setSubtitle(clientFileText(state));
  gtk_image_set_from_icon_name(GTK_IMAGE(fileIcon_),
                               hasClient ? "emblem-ok-symbolic" : "text-x-generic-symbolic");
  gtk_widget_set_sensitive(signInButton_, hasClient);
  // What became of a file is told where the eye is led next.
  if (hasClient && !hadClient_) gtk_widget_grab_focus(signInButton_);
  hadClient_ = hasClient;
}

void WelcomePage::focus() {
  gtk_widget_grab_focus(gtk_widget_is_sensitive(signInButton_) ? signInButton_ : choose_);
}

}  // namespace companion::window
