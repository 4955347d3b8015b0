#include "desktop/asking.hpp"

#include <algorithm>
#include <utility>

#include "desktop/complain.hpp"
#include "platform/processes/guarded.hpp"

namespace desktop {

Asking::Asking(const std::string& program, GDBusConnection* bus, Events events)
    : events_(std::move(events)),
      schedule_(rescheduled(std::nullopt, wallClock())),
      snapshot_(program),
      timeline_(program),
      timer_([this] { lookAtClock(); }),
      network_([this] { askSooner(); }),
      keyring_(bus, [this] { askSooner(); }) {
  askNext();
}

Asking::~Asking() {
  if (idle_ != 0) g_source_remove(idle_);
}

void Asking::follow() {
  const bool isComing = snapshot_.isRunning() && snapshot_.question().look == events_.wanted();
  if (!events_.isSeen() && !isComing) {
    snapshot_.end();
    wantsSnapshot_ = true;
  }
  askNext();
}

void Asking::refresh() {
  wantsTimeline_ = true;
  askNext();
}

/// Something that the last timeline lacked has come.
void Asking::askSooner() {
  lacksNothing_ = !timeline_.isRunning();
  schedule_ = hastened(schedule_, timelineAskedAt_, wallClock());
  setTimer();
}

/// The figures at hand come first, beside a timeline that is being fetched; a new timeline waits
/// for them, so that they are seen as soon as possible.
void Asking::askNext() {
  if (wantsSnapshot_ && !snapshot_.isRunning()) {
    wantsSnapshot_ = false;
    ask(snapshot_, false);
  }
  if (wantsTimeline_ && !snapshot_.isRunning() && !timeline_.isRunning()) {
    wantsTimeline_ = false;
    timelineAskedAt_ = wallClock();
    network_.noteQuestion();
    keyring_.noteQuestion();
    ask(timeline_, true);
  }
  setTimer();
}

void Asking::ask(WidgetProgram& program, bool timeline) {
  const Question question{timeline, events_.wanted()};
  program.ask(question, [this, question](RunResult result) { ended(question, std::move(result)); });
}

void Asking::ended(const Question& question, RunResult result) {
  if (question.timeline) timelineEnded(result);
  if (!result.answer) {
    noteFailure(question, result.failure);
  } else if (question.look == events_.wanted()) {
    if (question.timeline) snapshot_.end();  // which is older
    lastFailure_.reset();
    failures_ = 0;
    events_.answered(std::move(result), question.look);
  } else if (!events_.isSeen() && !snapshot_.isRunning()) {
    wantsSnapshot_ = true;
  }
  // The picture is painted before the next program is started.
  if (idle_ == 0) idle_ = g_idle_add_full(G_PRIORITY_LOW, paintedThenAsk, this, nullptr);
}

void Asking::timelineEnded(const RunResult& result) {
  const double now = wallClock();
  schedule_ = rescheduled(result.answer ? result.answer->reloadDate : std::nullopt, now);
  if (!std::exchange(lacksNothing_, true)) schedule_ = hastened(schedule_, timelineAskedAt_, now);
  if (!result.answer) return;
  keyring_.noteAnswer(result.answer->isConnected);
  events_.timelineAnswered(*result.answer);
}

/// The last good picture stays. While that is none, or another one than is wanted, it is tried
/// again soon.
void Asking::noteFailure(const Question& question, const std::string& failure) {
  if (lastFailure_ != failure) complain("no answer from the widget program: " + failure);
  lastFailure_ = failure;
  if (events_.isSeen()) return;
  if (!question.timeline) ++failures_;
  const auto retry = retried(failures_, wallClock());
  schedule_.reloadDate = std::min(schedule_.reloadDate, retry.reloadDate);
}

gboolean Asking::paintedThenAsk(gpointer asking) {
  platform::guarded([&] {
    auto* self = static_cast<Asking*>(asking);
    self->idle_ = 0;
    self->askNext();
    if (!self->snapshot_.isRunning() && !self->timeline_.isRunning()) self->events_.rests();
  });
  return G_SOURCE_REMOVE;
}

void Asking::lookAtClock() {
  const double now = wallClock();
  if (!timeline_.isRunning() && isReloadDue(schedule_, now)) {
    schedule_ = rescheduled(std::nullopt, now);
    wantsTimeline_ = true;
    wantsSnapshot_ = wantsSnapshot_ || (!events_.isSeen() && !snapshot_.isRunning());
    askNext();
  }
  setTimer();
}

void Asking::setTimer() {
  schedule_.isFetching = timeline_.isRunning();
  timer_.set(nextChange(schedule_, wallClock()));
}

}  // namespace desktop
