#include "companion/window/client_steps.hpp"

#include "VelmoraWidget/PerformanceMetrics.hpp"
#include "companion/main_loop_tasks.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/processes/browser.hpp"

namespace companion::window {

using platform::localizedString;

namespace {

struct Step {
  std::string title;
  std::string explanation;
  const char* page;  ///< the provider's, null without one
};

std::vector<Step> projectSteps() {
  return {{localizedString("Create a project"),
           localizedString("Type any name, such as Velmora, and press “Create”. It costs nothing."),
           "https://console.cloud.google.com/projectcreate"},
          {localizedString("Select the new project"),
           localizedString("Press the list at the top of the page and choose it there."),
           "https://console.cloud.google.com/projectselector2/home/dashboard"},
          {localizedString("Enable the AdSense Management API"),
           localizedString("Press “Enable”. This is where your figures come from."),
           "https://console.cloud.google.com/apis/library/adsense.googleapis.com"}};
}

std::vector<Step> clientSteps() {
  return {{localizedString("Set up the consent screen"),
           localizedString("Press “Get started”. As the app’s name type Velmora, for support and "
                           "contact choose your own address, as the audience “External”."),
           "https://console.cloud.google.com/auth/overview"},
          {localizedString("Publish the app"),
           localizedString("Press “Publish app”: without it the sign-in ends after 7 days. If you "
                           "had signed in before, sign in once more afterwards."),
           "https://console.cloud.google.com/auth/audience"},
          {localizedString("Create a client"),
           localizedString("As the application type choose “Desktop app”, then press “Create”."),
           "https://console.cloud.google.com/auth/clients/create"},
          {localizedString("Download its JSON file"),
           localizedString("Press “Download JSON” in the window that opens then: its secret is "
                           "shown there and never again. Drop the file here, or choose it below."),
           nullptr}};
}

void openPage(const std::string& page) {
  runBeside([page] { platform::openInBrowser(page); }, [] {});
}

GtkWidget* numberLabel(int number) {
  GtkWidget* label = gtk_label_new(velmora::formatNumber(number, 0).c_str());
  gtk_widget_add_css_class(label, "step-number");
  gtk_widget_set_valign(label, GTK_ALIGN_CENTER);
  return label;
}

GtkWidget* stepRow(const Step& step, int number) {
  GtkWidget* row = actionRow(step.title, step.explanation);
  adw_action_row_add_prefix(ADW_ACTION_ROW(row), numberLabel(number));
  setAccessibleDescription(row, step.explanation);
  if (step.page == nullptr) return row;
  gtk_list_box_row_set_activatable(GTK_LIST_BOX_ROW(row), TRUE);
  GtkWidget* sign = gtk_image_new_from_icon_name("adw-external-link-symbolic");
  adw_action_row_add_suffix(ADW_ACTION_ROW(row), sign);
  setAccessibleDescription(
      row, step.explanation + " " + localizedString("Opens a page in your browser."));
  connect(row, "activated", [page = std::string(step.page)] { openPage(page); });
  return row;
}

}  // namespace

GtkWidget* makeClientSteps() {
  GtkWidget* expander = adw_expander_row_new();
  adw_preferences_row_set_use_markup(ADW_PREFERENCES_ROW(expander), FALSE);
  adw_preferences_row_set_title(ADW_PREFERENCES_ROW(expander),
                                localizedString("How to get a client file").c_str());
  adw_expander_row_set_subtitle(ADW_EXPANDER_ROW(expander),
                                localizedString("Once, in about ten minutes").c_str());
  int number = 0;
  for (const auto& steps : {projectSteps(), clientSteps()})
    for (const auto& step : steps)
      adw_expander_row_add_row(ADW_EXPANDER_ROW(expander), stepRow(step, ++number));
  return expander;
}

}  // namespace companion::window
