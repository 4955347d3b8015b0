#include "companion/window/remedy_button.hpp"

#include "companion/main_loop_tasks.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/processes/browser.hpp"

namespace companion::window {

using platform::localizedString;

namespace {

/// It cannot be pressed while its action is not possible.
GtkWidget* actionButton(const std::string& label, const char* action) {
  GtkWidget* button = textButton(label, [] {});
  gtk_actionable_set_action_name(GTK_ACTIONABLE(button), action);
  return button;
}

}  // namespace

GtkWidget* makeRemedyButton(Session& session, Remedy remedy, const std::string& page) {
  const auto signIn = [&session] { session.signIn(); };
  switch (remedy) {
    case Remedy::signIn:
      return textButton(localizedString("_Sign In Again"), signIn);
    case Remedy::chooseAccount:
      return textButton(localizedString("_Use Another Account"), signIn);
    case Remedy::chooseClientFile:
      return actionButton(localizedString("_Choose Another File…"), "win.choose-file");
    case Remedy::openPage:
      return textButton(localizedString("_Open the Page"),
                        [page] { runBeside([page] { platform::openInBrowser(page); }, [] {}); });
    case Remedy::unlockKeyring:
      return textButton(localizedString("_Unlock…"), [&session] { session.unlockKeyring(); });
    case Remedy::tryAgain:
      break;
  }
  return actionButton(localizedString("_Try Again"), "win.refresh");
}

}  // namespace companion::window
