#pragma once

#include <string>

#include "companion/window/widgets.hpp"

namespace companion::window {

/// What has been earned towards one goal, as a ring with its figures beside.
struct GoalTile {
  GtkWidget* tile = nullptr;

  GoalTile() = default;
  explicit GoalTile(const std::string& title);

  /// Nothing is known yet.
  void clear() const;
  void show(double earned, double goal, const std::string& currency) const;

 private:
  std::string title_;
  GtkWidget* ring_ = nullptr;
  GtkWidget* amount_ = nullptr;
  GtkWidget* progress_ = nullptr;
};

}  // namespace companion::window
