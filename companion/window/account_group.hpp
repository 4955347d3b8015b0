#pragma once

#include "companion/window/folding_row.hpp"
#include "companion/window/session.hpp"
#include "companion/window/widgets.hpp"

namespace companion::window {

/// Who is signed in, and the way out.
class AccountGroup {
 public:
  explicit AccountGroup(Session& session);

  [[nodiscard]] AdwPreferencesGroup* group() const { return group_; }
  void update(const State& state);

 private:
  /// Signs out once the user has said so again.
  void askToSignOut();

  Session& session_;
  AdwPreferencesGroup* group_;
  FoldingRow row_;
};

}  // namespace companion::window
