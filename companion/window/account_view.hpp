#pragma once

#include "companion/window/folding_row.hpp"
#include "companion/window/goals_group.hpp"
#include "companion/window/news_group.hpp"
#include "companion/window/notice_group.hpp"

namespace companion::window {

/// Who is signed in, with which client file, what the goals are, and the way out.
class AccountView {
 public:
  explicit AccountView(Session& session);

  [[nodiscard]] GtkWidget* widget() const { return page_; }
  void update(const State& state);
  /// Stores at once what was typed last.
  void settle() { goals_.settle(); }

 private:
  AdwPreferencesGroup* makeAccount();
  AdwPreferencesGroup* makeClientFile();
  /// Signs out once the user has said so again.
  void askToSignOut();

  Session& session_;
  GtkWidget* page_;
  NoticeGroup message_;
  FoldingRow account_;
  GoalsGroup goals_;
  NewsGroup news_;
  FoldingRow clientFile_;
  NoticeGroup fileProblem_;
};

}  // namespace companion::window
