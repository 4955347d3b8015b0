#pragma once

#include <vector>

#include "companion/window/session.hpp"
#include "companion/window/widgets.hpp"

namespace companion::window {

/// Says what is wrong, and offers what helps; not there while all is well.
class NoticeGroup {
 public:
  explicit NoticeGroup(Session& session);

  [[nodiscard]] AdwPreferencesGroup* group() const { return group_; }
  void update(const std::vector<Notice>& notices);

 private:
  GtkWidget* makeRow(const Notice& notice);

  Session& session_;
  AdwPreferencesGroup* group_;
  std::vector<Notice> shown_;
  std::vector<GtkWidget*> rows_;
};

/// What became of something the user did, as it stays on every page.
std::vector<Notice> messageOf(const State& state);

}  // namespace companion::window
