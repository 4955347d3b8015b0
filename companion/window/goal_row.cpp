#include "companion/window/goal_row.hpp"

#include "companion/window/goal_text.hpp"

namespace companion::window {

namespace {

constexpr std::chrono::milliseconds restTime{700};
constexpr int entryWidth = 10;  // characters
constexpr double stepsToTheGoal = 10;

GtkWidget* makeEntry(const std::string& title) {
  GtkWidget* entry = gtk_entry_new();
  gtk_editable_set_width_chars(GTK_EDITABLE(entry), entryWidth);
  gtk_editable_set_max_width_chars(GTK_EDITABLE(entry), entryWidth);
  gtk_editable_set_alignment(GTK_EDITABLE(entry), 1);
  gtk_entry_set_input_purpose(GTK_ENTRY(entry), GTK_INPUT_PURPOSE_NUMBER);
  gtk_widget_set_valign(entry, GTK_ALIGN_CENTER);
  gtk_widget_add_css_class(entry, "numeric");
  setAccessibleLabel(entry, title);
  return entry;
}

/// How much an arrow key adds: 1, 10, 100, as fits the amount.
double stepFor(double amount) {
  double step = 1;
  while (step * stepsToTheGoal * stepsToTheGoal <= amount) step *= stepsToTheGoal;
  return step;
}

}  // namespace

GoalRow::GoalRow(const std::string& title, std::function<void(double)> changed)
    : changed_(std::move(changed)), entry_(makeEntry(title)), row_(nullptr, title, entry_) {
  connect(entry_, "changed", [this] { typed(); });
  connect(entry_, "activate", [this] { leave(); });
  auto* focus = gtk_event_controller_focus_new();
  connect(focus, "leave", [this] { leave(); });
  gtk_widget_add_controller(entry_, focus);
  auto* keys = gtk_event_controller_key_new();
  g_signal_connect(keys, "key-pressed", G_CALLBACK(keyPressed), this);
  gtk_widget_add_controller(entry_, keys);
}

void GoalRow::show(double amount, const std::string& currency) {
  stored_ = amount;
  const bool isOther = currency != currency_;
  currency_ = currency;
  if (isTyping_) return;
  const auto text = goalText(amount, currency);
  isShowing_ = true;
  if (isOther || text != gtk_editable_get_text(GTK_EDITABLE(entry_)))
    gtk_editable_set_text(GTK_EDITABLE(entry_), text.c_str());
  isShowing_ = false;
  mark("");
}

void GoalRow::typed() {
  if (isShowing_) return;
  isTyping_ = true;
  timer_.start(restTime, [this] { settle(); });
}

void GoalRow::settle() {
  timer_.stop();
  if (!isTyping_) return;
  const auto reading = readGoal(gtk_editable_get_text(GTK_EDITABLE(entry_)), currency_);
  mark(reading.problem);
  if (reading.amount && *reading.amount != stored_) changed_(*reading.amount);
}

/// What was understood is shown as it is stored; what was not stays, marked.
void GoalRow::leave() {
  settle();
  if (isTyping_ && readGoal(gtk_editable_get_text(GTK_EDITABLE(entry_)), currency_).amount) {
    isTyping_ = false;
    show(stored_, currency_);
  }
}

void GoalRow::mark(const std::string& problem) const {
  row_.setSubtitle(problem);
  const auto change = problem.empty() ? gtk_widget_remove_css_class : gtk_widget_add_css_class;
  change(entry_, "error");
  change(row_.row, "refused");
  gtk_accessible_update_state(
      GTK_ACCESSIBLE(entry_), GTK_ACCESSIBLE_STATE_INVALID,
      problem.empty() ? GTK_ACCESSIBLE_INVALID_FALSE : GTK_ACCESSIBLE_INVALID_TRUE, -1);
  setAccessibleDescription(entry_, problem);
}

void GoalRow::step(double amount) {
  const auto reading = readGoal(gtk_editable_get_text(GTK_EDITABLE(entry_)), currency_);
  const double next = reading.amount.value_or(stored_) + amount;
  if (next > 0) gtk_editable_set_text(GTK_EDITABLE(entry_), goalText(next, currency_).c_str());
}

gboolean GoalRow::keyPressed(GtkEventControllerKey*, guint key, guint, GdkModifierType,
                             gpointer row) {
  auto* self = static_cast<GoalRow*>(row);
  if (key != GDK_KEY_Up && key != GDK_KEY_Down) return FALSE;
  const double amount = stepFor(self->stored_);
  self->step(key == GDK_KEY_Up ? amount : -amount);
  return TRUE;
}

}  // namespace companion::window
