#include "companion/window/goals_store.hpp"

#include "companion/sign_in_words.hpp"
#include "companion/user_data.hpp"
#include "companion/window/keyring_work.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

namespace {

Notice noticeFor(const SignInError& error) {
  const auto failure = describeSignInFailure(error);
  return {.title = platform::localizedString("The goals could not be stored"),
          .advice = failure.advice,
          .details = failure.details,
          .canBeClosed = true};
}

}  // namespace

GoalsStore::GoalsStore(State& state, std::function<void()> changed, std::function<void()> stored)
    : state_(state), changed_(std::move(changed)), stored_(std::move(stored)) {}

void GoalsStore::store(const velmora::Objectives& goals) {
  if (goals == state_.status.goals) return;
  if (!isStoring_) storedGoals_ = state_.status.goals;
  state_.status.goals = goals;
  changed_();
  if (!isStoring_) storeLatest();
}

void GoalsStore::storeLatest() {
  isStoring_ = true;
  const auto goals = state_.status.goals;
  runWithKeyring([goals] { storeGoals(goals); },
                 [this, goals](const std::optional<SignInError>& error) {
                   isStoring_ = false;
                   if (error) {
                     state_.status.goals = storedGoals_;
                     state_.message = noticeFor(*error);
                     return changed_();
                   }
                   storedGoals_ = goals;
                   if (state_.status.goals != goals) return storeLatest();
                   stored_();
                 });
}

}  // namespace companion::window
