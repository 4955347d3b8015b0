#include "companion/window/client_steps.hpp"

#include "VelmoraWidget/PerformanceMetrics.hpp"
#include "companion/beside.hpp"
#include "companion/browser.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedString;

namespace {

struct Step {
  std::string title;
  std::string explanation;
  const char* page;  ///< the provider's, null without one
};

std::vector<Step> steps() {
  return {
      {localizedString("Create a project"),
       localizedString("In Google’s console, under any name. It costs nothing."),
       "https://console.cloud.google.com/projectcreate"},
      {localizedString("Enable the AdSense Management API"),
       localizedString("This is where your figures come from."),
       "https://console.cloud.google.com/apis/library/adsense.googleapis.com"},
      {localizedString("Set up and publish the consent screen"),
       localizedString("Choose “External”, then “Publish app” under “Audience”. Without that the "
                       "sign-in ends after 7 days."),
       "https://console.cloud.google.com/auth/overview"},
      {localizedString("Create an OAuth client"),
       localizedString("As the application type choose “Desktop app”."),
       "https://console.cloud.google.com/apis/credentials"},
      {localizedString("Download its JSON file"),
       localizedString("Then drop it on this window or choose it below."), nullptr}};
}

void openPage(const std::string& page) {
  runBeside([page] { openInBrowser(page); }, [] {});
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
                                localizedString("Once, in about five minutes").c_str());
  int number = 0;
  for (const auto& step : steps())
    adw_expander_row_add_row(ADW_EXPANDER_ROW(expander), stepRow(step, ++number));
  return expander;
}

}  // namespace companion::window
