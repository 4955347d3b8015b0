#include "companion/window/notice_group.hpp"

#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedString;

NoticeGroup::NoticeGroup(Session& session)
    : group_(preferencesGroup("", "")),
      signIn_(textButton(localizedString("_Sign In Again"), [&session] { session.signIn(); })),
      retry_(textButton(localizedString("_Try Again"), [&session] { session.refresh(); })) {
  GtkWidget* buttons = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
  gtk_box_append(GTK_BOX(buttons), signIn_);
  gtk_box_append(GTK_BOX(buttons), retry_);
  row_ = FoldingRow(gtk_image_new_from_icon_name("dialog-warning-symbolic"), "", buttons);
  gtk_widget_add_css_class(row_.row, "notice");
  adw_preferences_group_add(group_, row_.row);
}

void NoticeGroup::update(const State& state) {
  gtk_widget_set_visible(GTK_WIDGET(group_), state.failure.has_value());
  if (!state.failure) return;
  const auto notice = noticeFor(*state.failure);
  row_.setTitle(notice.title);
  row_.setSubtitle(notice.advice);
  gtk_widget_set_visible(signIn_, notice.offersSignIn);
  gtk_widget_set_visible(retry_, !notice.offersSignIn);
  gtk_widget_set_sensitive(retry_, !state.isRefreshing);
}

}  // namespace companion::window
