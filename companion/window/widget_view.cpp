#include "companion/window/widget_view.hpp"

#include "companion/window/monitors.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedFormat;
using platform::localizedString;

namespace {

constexpr const char* ownPlace = "";  // the value of a corner that is none

std::string nameOf(platform::WidgetFamily family) {
  if (family == platform::WidgetFamily::systemSmall) return localizedString("Small");
  return family == platform::WidgetFamily::systemMedium ? localizedString("Medium")
                                                        : localizedString("Large");
}

void takeFamily(desktop::Placement& placement, const std::string& name) {
  placement.family = desktop::offeredFamily(name).value_or(placement.family);
}

void takeCorner(desktop::Placement& placement, const std::string& name) {
  if (name == ownPlace) return;
  placement.corner = desktop::cornerFromName(name).value_or(placement.corner);
  placement.moved.reset();
}

void takeMonitor(desktop::Placement& placement, const std::string& name) {
  placement.monitor = name;
  placement.moved.reset();
}

}  // namespace

WidgetView::WidgetView(DesktopHost& host)
    : host_(host),
      page_(adw_preferences_page_new()),
      shown_(localizedString("Show the widget"), [this](bool isOn) { host_.show(isOn); }),
      atLogin_(localizedString("Start at login"), [this](bool isOn) { host_.startAtLogin(isOn); }),
      size_(localizedString("Size"),
            [this](const std::string& value) { choose(takeFamily, value); }),
      corner_(localizedString("Corner"),
              [this](const std::string& value) { choose(takeCorner, value); }),
      monitor_(localizedString("Monitor"),
               [this](const std::string& value) { choose(takeMonitor, value); }),
      amounts_(localizedString("Hide the amounts"), [this](bool isOn) { hideAmounts(isOn); }) {
  auto* page = ADW_PREFERENCES_PAGE(page_);
  adw_preferences_page_add(page, makeSwitches());
  adw_preferences_page_add(page, makePlace());
  adw_preferences_page_add(page, makePicture());
  updateHost();
}

AdwPreferencesGroup* WidgetView::makeSwitches() {
  auto* group = preferencesGroup(localizedString("On the Desktop"), "");
  problem_ = FoldingRow(gtk_image_new_from_icon_name("dialog-warning-symbolic"), "",
                        gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0));
  gtk_widget_add_css_class(problem_.row, "notice");
  for (auto* row : {shown_.widget(), problem_.row, atLogin_.widget()})
    adw_preferences_group_add(group, row);
  return group;
}

AdwPreferencesGroup* WidgetView::makePlace() {
  auto* group = preferencesGroup(localizedString("How It Looks"), "");
  for (auto* row : {size_.widget(), corner_.widget(), monitor_.widget(), amounts_.widget()})
    adw_preferences_group_add(group, row);
  return group;
}

AdwPreferencesGroup* WidgetView::makePicture() {
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 12);
  gtk_widget_add_css_class(box, "card");
  gtk_widget_add_css_class(box, "wallpaper");
  gtk_box_append(GTK_BOX(box), picture_.widget());
  caption_ = gtk_label_new("");
  gtk_label_set_wrap(GTK_LABEL(caption_), TRUE);
  gtk_label_set_justify(GTK_LABEL(caption_), GTK_JUSTIFY_CENTER);
  gtk_box_append(GTK_BOX(box), caption_);
  auto* group = preferencesGroup("", "");
  adw_preferences_group_add(group, box);
  return group;
}

void WidgetView::choose(Take take, const std::string& value) {
  auto placement = host_.placement();
  take(placement, value);
  host_.place(placement);
}

void WidgetView::hideAmounts(bool hidden) {
  auto placement = host_.placement();
  placement.hidesAmounts = hidden;
  host_.place(placement);
}

void WidgetView::offerSizes() {
  std::vector<ChoiceRow::Choice> sizes;
  for (const auto family : desktop::offeredFamilies)
    sizes.push_back({platform::familyShortName(family), nameOf(family)});
  size_.offer(sizes, platform::familyShortName(host_.placement().family));
}

void WidgetView::offerCorners() {
  const auto& placement = host_.placement();
  std::vector<ChoiceRow::Choice> corners{{"top-left", localizedString("Top left")},
                                         {"top-right", localizedString("Top right")},
                                         {"bottom-left", localizedString("Bottom left")},
                                         {"bottom-right", localizedString("Bottom right")}};
  if (placement.moved) corners.push_back({ownPlace, localizedString("Where you dragged it")});
  corner_.offer(corners, placement.moved ? ownPlace : desktop::cornerName(placement.corner));
}

void WidgetView::offerMonitors() {
  const auto monitors = monitorsOf(gtk_widget_get_display(page_));
  const auto& kept = host_.placement().monitor;
  std::vector<ChoiceRow::Choice> choices{{"", localizedString("The main one")}};
  for (const auto& monitor : monitors) choices.push_back({monitor.connector, monitor.name});
  const auto chosen = connectorOf(kept, monitors);
  if (!chosen) choices.push_back({kept, localizedFormat("%s (not connected)", {kept})});
  monitor_.offer(choices, chosen.value_or(kept));
  gtk_widget_set_visible(monitor_.widget(), monitors.size() > 1 || !chosen);
}

void WidgetView::updateHost() {
  const bool isInstalled = host_.isInstalled();
  if (!host_.isChanging())
    shown_.show(
        host_.isRunning(),
        isInstalled ? "" : localizedString("The program velmora-desktop is not installed."));
  shown_.setSensitive(isInstalled && !host_.isChanging());
  atLogin_.show(host_.isAtLogin(), "");
  atLogin_.setSensitive(isInstalled || host_.isAtLogin());
  const auto problem = host_.problem().value_or(Notice{});
  problem_.setTitle(problem.title);
  problem_.setSubtitle(problem.advice);
  problem_.setDetails(problem.details);
  gtk_widget_set_visible(problem_.row, host_.problem().has_value());
  offerSizes();
  offerCorners();
  offerMonitors();
  amounts_.show(host_.placement().hidesAmounts,
                localizedString("Blurred on the desktop, for when others can see your screen."));
  if (drawnFamily_ != host_.placement().family) redraw();
}

void WidgetView::update(const State& state) {
  const bool isSample = figuresOf(state) == nullptr;
  gtk_widget_set_visible(caption_, isSample ? TRUE : FALSE);
  gtk_label_set_text(GTK_LABEL(caption_),
                     localizedString("These figures are made up, until yours are here.").c_str());
}

void WidgetView::redraw() {
  drawnFamily_ = host_.placement().family;
  setAccessibleLabel(picture_.widget(), localizedFormat("The widget as it will look, size: %s",
                                                        {nameOf(*drawnFamily_)}));
  picture_.draw(*drawnFamily_);
}

}  // namespace companion::window
