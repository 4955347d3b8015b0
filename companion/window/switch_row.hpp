#pragma once

#include <functional>
#include <string>

#include "companion/window/widgets.hpp"

namespace companion::window {

/// A row with a switch behind its texts.
class SwitchRow {
 public:
  SwitchRow(const std::string& title, std::function<void(bool isOn)> switched);
  SwitchRow(const SwitchRow&) = delete;
  SwitchRow& operator=(const SwitchRow&) = delete;

  [[nodiscard]] GtkWidget* widget() const { return row_; }
  void show(bool isOn, const std::string& subtitle);
  void setSensitive(bool isSensitive) const { gtk_widget_set_sensitive(row_, isSensitive); }

 private:
  GtkWidget* row_;
  GtkWidget* switch_;
  bool isShowing_ = false;
};

}  // namespace companion::window
