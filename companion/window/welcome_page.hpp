#pragma once

#include "companion/window/folding_row.hpp"
#include "companion/window/notice_group.hpp"
#include "companion/window/widget_picture.hpp"

namespace companion::window {

/// What Velmora shows, where a client file comes from, and the way to sign in.
class WelcomePage {
 public:
  explicit WelcomePage(Session& session);

  [[nodiscard]] GtkWidget* widget() const { return page_; }
  void update(const State& state);
  /// Puts the focus where the next step is.
  void focus();

 private:
  AdwPreferencesGroup* makeHero();
  AdwPreferencesGroup* makeClientGroup();
  AdwPreferencesGroup* makeSignInGroup();

  Session& session_;
  WidgetPicture picture_{WidgetPicture::Content::sample};
  GtkWidget* page_;
  NoticeGroup message_;
  NoticeGroup fileProblem_;
  FoldingRow fileRow_;
  GtkWidget* choose_ = nullptr;
  GtkWidget* fileIcon_ = nullptr;
  GtkWidget* signInButton_ = nullptr;
  bool hadClient_ = false;
};

}  // namespace companion::window
