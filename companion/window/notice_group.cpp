#include "companion/window/notice_group.hpp"

#include "companion/window/folding_row.hpp"
#include "companion/window/remedy_button.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedString;

std::vector<Notice> messageOf(const State& state) {
  return state.message ? std::vector{*state.message} : std::vector<Notice>{};
}

NoticeGroup::NoticeGroup(Session& session) : session_(session), group_(preferencesGroup("", "")) {
  gtk_widget_set_visible(GTK_WIDGET(group_), FALSE);
}

GtkWidget* NoticeGroup::makeRow(const Notice& notice) {
  GtkWidget* buttons = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 6);
  if (notice.remedy)
    gtk_box_append(GTK_BOX(buttons), makeRemedyButton(session_, *notice.remedy, notice.page));
  if (notice.canBeClosed)
    gtk_box_append(GTK_BOX(buttons),
                   textButton(localizedString("_Close"), [this] { session_.closeMessage(); }));
  const FoldingRow row(gtk_image_new_from_icon_name("dialog-warning-symbolic"), notice.title,
                       buttons);
  row.setSubtitle(notice.advice);
  row.setDetails(notice.details);
  gtk_widget_add_css_class(row.row, "notice");
  return row.row;
}

void NoticeGroup::update(const std::vector<Notice>& notices) {
  if (notices == shown_) return;
  for (auto* row : rows_) adw_preferences_group_remove(group_, row);
  rows_.clear();
  for (const auto& notice : notices) {
    rows_.push_back(makeRow(notice));
    adw_preferences_group_add(group_, rows_.back());
  }
  shown_ = notices;
  gtk_widget_set_visible(GTK_WIDGET(group_), notices.empty() ? FALSE : TRUE);
}

}  // namespace companion::window
