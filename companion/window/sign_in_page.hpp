#pragma once

#include "companion/window/details.hpp"
#include "companion/window/session.hpp"

namespace companion::window {

/// Waits with the user for the browser.
class SignInPage {
 public:
  explicit SignInPage(Session& session);

  [[nodiscard]] GtkWidget* widget() const { return page_; }
  void update(const State& state);

 private:
  void copyAddress();

  Session& session_;
  GtkWidget* spinner_;
  GtkWidget* again_;
  GtkWidget* copy_;
  GtkWidget* copied_;
  GtkWidget* cancel_;
  GtkWidget* page_;
};

/// Says why a sign-in did not come about, and offers what helps.
class SignInFailedPage {
 public:
  explicit SignInFailedPage(Session& session);

  [[nodiscard]] GtkWidget* widget() const { return page_; }
  void update(const State& state);

 private:
  Session& session_;
  GtkWidget* help_;
  GtkWidget* again_;
  Details details_;
  GtkWidget* page_;
};

}  // namespace companion::window
