#include "companion/window/goals_group.hpp"

#include "companion/window/amount_entry.hpp"
#include "companion/window/ring.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedFormat;
using platform::localizedString;

namespace {

constexpr guint settlingMilliseconds = 700;

}  // namespace

GoalsGroup::GoalsGroup(Session& session)
    : session_(session),
      group_(preferencesGroup(localizedString("Goals"), "")),
      daily_(makeGoal(localizedString("For each day"), 1)),
      monthly_(makeGoal(localizedString("For each month"), 10)) {}

GoalsGroup::Goal GoalsGroup::makeGoal(const std::string& title, double step) {
  Goal goal{makeRing(), makeAmountEntry(step), {}};
  goal.row = FoldingRow(goal.ring, title, goal.amount);
  setAccessibleLabel(goal.amount, title);
  connect(goal.amount, "value-changed", [this] { goalChanged(); });
  adw_preferences_group_add(group_, goal.row.row);
  return goal;
}

/// Stored once the value has come to rest, not at each step.
void GoalsGroup::goalChanged() {
  if (isShowing_) return;
  if (timer_ != 0) g_source_remove(timer_);
  timer_ = g_timeout_add(
      settlingMilliseconds,
      [](gpointer self) -> gboolean {
        static_cast<GoalsGroup*>(self)->settle();
        return G_SOURCE_CONTINUE;
      },
      this);
}

void GoalsGroup::settle() {
  if (timer_ == 0) return;
  g_source_remove(std::exchange(timer_, 0));
  session_.storeGoals({amountOf(daily_.amount), amountOf(monthly_.amount)});
}

void GoalsGroup::show(const Goal& goal, double earned, double amount, const State& state) {
  const auto& snapshot = state.status.snapshot;
  if (timer_ == 0) showAmount(goal.amount, amount, snapshot ? snapshot->currency : "");
  setShare(goal.ring, snapshot ? shareOf(earned, amount) : 0);
  goal.row.setSubtitle(snapshot ? progressText(earned, amount, snapshot->currency) : "");
}

void GoalsGroup::update(const State& state) {
  isShowing_ = true;
  const auto& snapshot = state.status.snapshot;
  const auto& goals = state.status.goals;
  adw_preferences_group_set_description(
      group_,
      snapshot
          ? escaped(localizedFormat("In the account’s currency, %s", {snapshot->currency})).c_str()
          : "");
  show(daily_, snapshot ? snapshot->today : 0, goals.daily, state);
  show(monthly_, snapshot ? snapshot->monthToDate : 0, goals.monthly, state);
  isShowing_ = false;
}

}  // namespace companion::window
