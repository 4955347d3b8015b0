#pragma once

#include <string>

#include "companion/window/widgets.hpp"

namespace companion::window {

/// The technical text behind a message, folded away, that can be selected and copied.
class Details {
 public:
  Details() = default;
  static Details make();

  [[nodiscard]] GtkWidget* widget() const { return box_; }
  /// An empty one is not shown.
  void setText(const std::string& text) const;

 private:
  GtkWidget* box_ = nullptr;
  GtkWidget* label_ = nullptr;
};

}  // namespace companion::window
