#pragma once

#include <functional>
#include <string>
#include <vector>

#include "companion/window/widgets.hpp"

namespace companion::window {

/// A row with a list to choose from.
class ChoiceRow {
 public:
  /// What is kept, and what is shown for it.
  struct Choice {
    std::string value;
    std::string name;

    bool operator==(const Choice&) const = default;
  };

  ChoiceRow(const std::string& title, std::function<void(const std::string& value)> chosen);
  ChoiceRow(const ChoiceRow&) = delete;
  ChoiceRow& operator=(const ChoiceRow&) = delete;

  [[nodiscard]] GtkWidget* widget() const { return row_; }
  void offer(const std::vector<Choice>& choices, const std::string& selected);

 private:
  GtkWidget* row_;
  std::vector<Choice> choices_;
  bool isShowing_ = false;
};

}  // namespace companion::window
