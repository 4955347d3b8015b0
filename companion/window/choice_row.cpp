#include "companion/window/choice_row.hpp"

namespace companion::window {

ChoiceRow::ChoiceRow(const std::string& title, std::function<void(const std::string&)> chosen)
    : row_(adw_combo_row_new()) {
  adw_preferences_row_set_use_markup(ADW_PREFERENCES_ROW(row_), FALSE);
  adw_preferences_row_set_title(ADW_PREFERENCES_ROW(row_), title.c_str());
  connect(row_, "notify::selected", [this, chosen = std::move(chosen)] {
    const auto selected = adw_combo_row_get_selected(ADW_COMBO_ROW(row_));
    if (!isShowing_ && selected < choices_.size()) chosen(choices_[selected].value);
  });
}

void ChoiceRow::offer(const std::vector<Choice>& choices, const std::string& selected) {
  isShowing_ = true;
  auto* row = ADW_COMBO_ROW(row_);
  if (choices != choices_) {
    choices_ = choices;
    const Reference<GtkStringList> list(gtk_string_list_new(nullptr));
    for (const auto& choice : choices) gtk_string_list_append(list.get(), choice.name.c_str());
    adw_combo_row_set_model(row, G_LIST_MODEL(list.get()));
  }
  for (std::size_t i = 0; i < choices.size(); ++i)
    if (choices[i].value == selected) adw_combo_row_set_selected(row, static_cast<guint>(i));
  isShowing_ = false;
}

}  // namespace companion::window
