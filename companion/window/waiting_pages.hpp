#pragma once

#include "companion/window/session.hpp"
#include "companion/window/widgets.hpp"

namespace companion::window {

/// Asks for the keyring.
GtkWidget* makeLockedPage(Session& session);

/// Says that there is no keyring.
GtkWidget* makeNoKeyringPage(Session& session);

/// Waits until the state is read, or the user is signed out.
class BusyPage {
 public:
  /// An empty title says nothing.
  BusyPage(Page page, const std::string& title);

  [[nodiscard]] GtkWidget* widget() const { return widget_; }
  void update(const State& state);

 private:
  Page page_;
  GtkWidget* spinner_;
  GtkWidget* widget_;
};

}  // namespace companion::window
