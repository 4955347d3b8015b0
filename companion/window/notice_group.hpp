#pragma once

#include "companion/window/folding_row.hpp"
#include "companion/window/session.hpp"
#include "companion/window/widgets.hpp"

namespace companion::window {

/// Says why the last refresh failed and offers what helps; not there while all is well.
class NoticeGroup {
 public:
  explicit NoticeGroup(Session& session);

  [[nodiscard]] AdwPreferencesGroup* group() const { return group_; }
  void update(const State& state);

 private:
  AdwPreferencesGroup* group_;
  GtkWidget* signIn_;
  GtkWidget* retry_;
  FoldingRow row_;
};

}  // namespace companion::window
