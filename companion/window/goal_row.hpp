#pragma once

#include <functional>
#include <optional>
#include <string>

#include "companion/window/folding_row.hpp"
#include "companion/window/timer.hpp"
#include "companion/window/widgets.hpp"

namespace companion::window {

/// One goal that can be typed. What was typed is told once it has come to rest, or the user has
/// gone on; what cannot be read is marked, and says why.
class GoalRow {
 public:
  GoalRow(const std::string& title, std::function<void(double amount)> changed);

  [[nodiscard]] GtkWidget* widget() const { return row_.row; }
  /// Shows the stored amount, unless the user is typing another one.
  void show(double amount, const std::string& currency);
  /// Tells at once what was typed last.
  void settle();

 private:
  void typed();
  void leave();
  void mark(const std::string& problem) const;
  void step(double amount);
  static gboolean keyPressed(GtkEventControllerKey*, guint key, guint, GdkModifierType,
                             gpointer row);

  std::function<void(double)> changed_;
  GtkWidget* entry_;
  FoldingRow row_;
  Timer timer_;
  double stored_ = 0;
  std::string currency_;
  bool isShowing_ = false;
  bool isTyping_ = false;  ///< and what was typed is not what is stored
};

}  // namespace companion::window
