#include "companion/window/history_feed.hpp"

#include "companion/history/chart_model.hpp"
#include "companion/main_loop_tasks.hpp"
#include "platform/foundation/clock.hpp"

namespace companion::window {

namespace {

Failure failureOf(const std::exception_ptr& problem) {
  try {
    std::rethrow_exception(problem);
  } catch (const std::exception& error) {
    return describeFailure(error);
  }
}

}  // namespace

HistoryFeed::HistoryFeed(State& state, std::function<void()> changed)
    : state_(state), changed_(std::move(changed)) {}

void HistoryFeed::load() {
  if (state_.isFetchingHistory || !state_.status.isSignedIn) return;
  if (state_.history) {
    if (wantsHistory(state_)) update();
    return;
  }
  run([] { return HistoryAnswer{.history = historyAtHand(chartDays)}; });
}

void HistoryFeed::update() {
  if (state_.isFetchingHistory || !state_.status.isSignedIn) return;
  state_.historyTriedAt = platform::now();
  run([] { return upToDateHistory(chartDays); });
}

void HistoryFeed::forget() {
  ++user_;
  state_.history.reset();
  state_.historyFailure.reset();
  state_.historyTriedAt.reset();
  state_.isFetchingHistory = false;
}

void HistoryFeed::run(std::function<HistoryAnswer()> work) {
  state_.isFetchingHistory = true;
  auto answer = std::make_shared<HistoryAnswer>();
  runBeside([work = std::move(work), answer] { *answer = work(); },
            [this, answer, user = user_] {
              if (user == user_) take(*answer);
            });
}

void HistoryFeed::take(const HistoryAnswer& answer) {
  state_.isFetchingHistory = false;
  if (answer.history) state_.history = std::make_shared<const History>(*answer.history);
  state_.historyFailure.reset();
  if (answer.problem) state_.historyFailure = failureOf(answer.problem);
  changed_();
  if (wantsHistory(state_) && !state_.isRefreshing && !state_.failure) update();
}

}  // namespace companion::window
