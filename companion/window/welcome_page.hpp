#pragma once

#include "companion/window/folding_row.hpp"
#include "companion/window/session.hpp"
#include "companion/window/widget_picture.hpp"
#include "companion/window/widgets.hpp"

namespace companion::window {

/// What Velmora shows, where a client file comes from, and the way to sign in.
class WelcomePage {
 public:
  explicit WelcomePage(Session& session);

  [[nodiscard]] GtkWidget* widget() const { return page_; }
  void update(const State& state);
  /// Lets the user choose a client file.
  void chooseFile();

 private:
  AdwPreferencesGroup* makeHero();
  AdwPreferencesGroup* makeClientGroup();
  AdwPreferencesGroup* makeSignInGroup();

  Session& session_;
  WidgetPicture picture_{WidgetPicture::Content::sample};
  GtkWidget* page_;
  GtkWidget* steps_ = nullptr;
  FoldingRow fileRow_;
  GtkWidget* fileIcon_ = nullptr;
  GtkWidget* signInButton_ = nullptr;
  std::string shownError_;
  bool hadClient_ = false;
  bool isFirst_ = true;
};

}  // namespace companion::window
