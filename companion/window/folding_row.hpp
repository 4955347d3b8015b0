#pragma once

#include <string>

#include "companion/window/details.hpp"
#include "companion/window/widgets.hpp"

namespace companion::window {

/// A row of a list with a sign before and a control behind its texts; in little room the control
/// stands below them.
struct FoldingRow {
  GtkWidget* row = nullptr;

  FoldingRow() = default;
  /// `sign` may be null; `end` is one control, or a box of several.
  FoldingRow(GtkWidget* sign, const std::string& title, GtkWidget* end);

  void setTitle(const std::string& title) const;
  /// An empty one is not shown.
  void setSubtitle(const std::string& subtitle) const;
  /// The technical text; an empty one is not shown.
  void setDetails(const std::string& text) const { details_.setText(text); }

 private:
  GtkWidget* title_ = nullptr;
  GtkWidget* subtitle_ = nullptr;
  Details details_;
};

}  // namespace companion::window
