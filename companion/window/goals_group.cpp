#include "companion/window/goals_group.hpp"

#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedFormat;
using platform::localizedString;

GoalsGroup::GoalsGroup(Session& session)
    : group_(preferencesGroup(localizedString("Goals"), "")),
      daily_(localizedString("For each day"),
             [&session](double amount) {
               session.storeGoals({amount, session.state().status.goals.monthly});
             }),
      monthly_(localizedString("For each month"), [&session](double amount) {
        session.storeGoals({session.state().status.goals.daily, amount});
      }) {
  adw_preferences_group_add(group_, daily_.widget());
  adw_preferences_group_add(group_, monthly_.widget());
}

void GoalsGroup::settle() {
  daily_.settle();
  monthly_.settle();
}

void GoalsGroup::update(const State& state) {
  const auto* figures = figuresOf(state);
  const std::string currency = figures == nullptr ? "" : figures->currency;
  adw_preferences_group_set_description(
      group_, currency.empty()
                  ? ""
                  : escaped(localizedFormat("In the account’s currency, %s", {currency})).c_str());
  daily_.show(state.status.goals.daily, currency);
  monthly_.show(state.status.goals.monthly, currency);
}

}  // namespace companion::window
