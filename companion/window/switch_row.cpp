#include "companion/window/switch_row.hpp"

namespace companion::window {

SwitchRow::SwitchRow(const std::string& title, std::function<void(bool)> switched)
    : row_(actionRow(title, "")), switch_(gtk_switch_new()) {
  gtk_widget_set_valign(switch_, GTK_ALIGN_CENTER);
  adw_action_row_add_suffix(ADW_ACTION_ROW(row_), switch_);
  adw_action_row_set_activatable_widget(ADW_ACTION_ROW(row_), switch_);
  connect(switch_, "notify::active", [this, switched = std::move(switched)] {
    if (!isShowing_) switched(gtk_switch_get_active(GTK_SWITCH(switch_)) != FALSE);
  });
}

void SwitchRow::show(bool isOn, const std::string& subtitle) {
  isShowing_ = true;
  gtk_switch_set_active(GTK_SWITCH(switch_), isOn ? TRUE : FALSE);
  isShowing_ = false;
  setSubtitle(row_, subtitle);
  for (auto* widget : {row_, switch_}) setAccessibleDescription(widget, subtitle);
}

}  // namespace companion::window
