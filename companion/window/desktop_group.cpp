#include "companion/window/desktop_group.hpp"

#include "companion/window/monitors.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedFormat;
using platform::localizedString;

namespace {

constexpr const char* ownPlace = "";  // the value of a corner that is none

std::string switchText(const DesktopHost& host) {
  if (!host.isInstalled()) return localizedString("The program velmora-desktop is not installed.");
  if (host.isRunning() == host.isAtLogin()) return localizedString("Now and at each login");
  return host.isRunning() ? localizedString("Now, but not at the next login")
                          : localizedString("Not now, but at the next login");
}

std::string familyName(const std::string& family) {
  if (family == "small") return localizedString("Small");
  return family == "medium" ? localizedString("Medium") : localizedString("Large");
}

}  // namespace

DesktopGroup::DesktopGroup(DesktopHost& host)
    : host_(host), group_(preferencesGroup(localizedString("On the Desktop"), "")) {
  makeSwitch();
  makeChoice(size_, localizedString("Size"), &Placement::family);
  makeChoice(corner_, localizedString("Corner"), &Placement::corner);
  makeChoice(monitor_, localizedString("Monitor"), &Placement::monitor);
  makePicture();
}

void DesktopGroup::makeSwitch() {
  switchRow_ = actionRow(localizedString("Show the widget"), "");
  switch_ = gtk_switch_new();
  gtk_widget_set_valign(switch_, GTK_ALIGN_CENTER);
  adw_action_row_add_suffix(ADW_ACTION_ROW(switchRow_), switch_);
  adw_action_row_set_activatable_widget(ADW_ACTION_ROW(switchRow_), switch_);
  connect(switch_, "notify::active", [this] {
    if (!isShowing_) host_.show(gtk_switch_get_active(GTK_SWITCH(switch_)) != FALSE);
  });
  adw_preferences_group_add(group_, switchRow_);
}

void DesktopGroup::makeChoice(Choice& choice, const std::string& title,
                              std::string Placement::* field) {
  choice.row = adw_combo_row_new();
  adw_preferences_row_set_use_markup(ADW_PREFERENCES_ROW(choice.row), FALSE);
  adw_preferences_row_set_title(ADW_PREFERENCES_ROW(choice.row), title.c_str());
  adw_preferences_group_add(group_, choice.row);
  connect(choice.row, "notify::selected", [this, &choice, field] { chosen(choice, field); });
}

void DesktopGroup::makePicture() {
  GtkWidget* row = adw_preferences_row_new();
  gtk_list_box_row_set_activatable(GTK_LIST_BOX_ROW(row), FALSE);
  gtk_widget_set_focusable(row, FALSE);
  adw_preferences_row_set_title(ADW_PREFERENCES_ROW(row),
                                localizedString("How it will look").c_str());
  gtk_widget_add_css_class(row, "wallpaper");
  gtk_list_box_row_set_child(GTK_LIST_BOX_ROW(row), picture_.widget());
  adw_preferences_group_add(group_, row);
}

void DesktopGroup::chosen(const Choice& choice, std::string Placement::* field) {
  const auto selected = adw_combo_row_get_selected(ADW_COMBO_ROW(choice.row));
  if (isShowing_ || selected >= choice.values.size()) return;
  auto placement = host_.placement();
  const auto& value = choice.values[selected];
  if (field == &Placement::corner && value == ownPlace) return;
  placement.*field = value;
  if (field != &Placement::family) placement.isMoved = false;
  host_.place(placement);
}

void DesktopGroup::offer(Choice& choice, const std::vector<std::string>& values,
                         const std::vector<std::string>& names, const std::string& selected) {
  auto* row = ADW_COMBO_ROW(choice.row);
  if (values != choice.values || names != choice.names) {
    choice.values = values;
    choice.names = names;
    const Reference<GtkStringList> list(gtk_string_list_new(nullptr));
    for (const auto& name : names) gtk_string_list_append(list.get(), name.c_str());
    adw_combo_row_set_model(row, G_LIST_MODEL(list.get()));
  }
  for (std::size_t i = 0; i < values.size(); ++i)
    if (values[i] == selected) adw_combo_row_set_selected(row, static_cast<guint>(i));
}

void DesktopGroup::offerMonitors() {
  auto monitors = monitorsOf(gtk_widget_get_display(GTK_WIDGET(group_)));
  const auto& kept = host_.placement().monitor;
  std::vector<std::string> values{""};
  std::vector<std::string> names{localizedString("The main one")};
  bool isThere = kept.empty();
  for (const auto& monitor : monitors) {
    values.push_back(monitor.connector);
    names.push_back(monitor.name);
    isThere = isThere || monitor.connector == kept;
  }
  if (!isThere) {
    values.push_back(kept);
    names.push_back(localizedFormat("%s (not connected)", {kept}));
  }
  offer(monitor_, values, names, kept);
  gtk_widget_set_visible(monitor_.row, monitors.size() > 1 || !isThere);
}

void DesktopGroup::update() {
  isShowing_ = true;
  const auto placement = host_.placement();
  gtk_widget_set_sensitive(switchRow_, host_.isInstalled() && !host_.isChanging());
  if (!host_.isChanging()) gtk_switch_set_active(GTK_SWITCH(switch_), host_.isRunning());
  setSubtitle(switchRow_, switchText(host_));
  const std::vector<std::string> families{"small", "medium", "large"};
  offer(size_, families, {familyName("small"), familyName("medium"), familyName("large")},
        placement.family);
  std::vector<std::string> corners{"top-left", "top-right", "bottom-left", "bottom-right"};
  std::vector<std::string> names{localizedString("Top left"), localizedString("Top right"),
                                 localizedString("Bottom left"), localizedString("Bottom right")};
  if (placement.isMoved) {
    corners.push_back(ownPlace);
    names.push_back(localizedString("Where you dragged it"));
  }
  offer(corner_, corners, names, placement.isMoved ? ownPlace : placement.corner);
  offerMonitors();
  isShowing_ = false;
  if (placement.family != drawnFamily_) redraw();
}

void DesktopGroup::redraw() {
  drawnFamily_ = host_.placement().family;
  setAccessibleLabel(picture_.widget(), localizedFormat("The widget as it will look, size: %s",
                                                        {familyName(drawnFamily_)}));
  picture_.draw(drawnFamily_);
}

}  // namespace companion::window
