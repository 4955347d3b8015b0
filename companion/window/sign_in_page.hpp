#pragma once

#include "companion/window/session.hpp"
#include "companion/window/widgets.hpp"

namespace companion::window {

/// Waits with the user for the browser.
class SignInPage {
 public:
  explicit SignInPage(Session& session);

  [[nodiscard]] GtkWidget* widget() const { return page_; }
  void update(const State& state);

 private:
  Session& session_;
  GtkWidget* page_;
  GtkWidget* spinner_;
  GtkWidget* again_;
  GtkWidget* copy_;
  GtkWidget* cancel_;
};

/// Says why a sign-in did not come about.
class SignInFailedPage {
 public:
  explicit SignInFailedPage(Session& session);

  [[nodiscard]] GtkWidget* widget() const { return page_; }
  void update(const State& state);

 private:
  GtkWidget* page_;
};

/// Asks for the keyring.
GtkWidget* makeLockedPage(Session& session);

}  // namespace companion::window
