#include "desktop/host.hpp"

#include <glib.h>

#include <utility>

namespace desktop {

Host::Host(const CommandLine& line, std::string program, std::function<void()> quit)
    : quit_(std::move(quit)),
      placement_(loadPlacement(placementFile())),
      schedule_(rescheduled(std::nullopt, wallClock())),
      program_(std::make_unique<WidgetProgram>(std::move(program))),
      timer_([this] { lookAtClock(); }) {
  change(applied(line, placement_));
}

int Host::scale() const { return window_ ? window_->scale() : placement_.lastScale; }

WindowActions Host::actions() {
  WindowActions actions;
  actions.chooseFamily = [this](const std::string& family) {
    auto placement = placement_;
    placement.family = family;
    change(placement);
  };
  actions.chooseCorner = [this](Corner corner) {
    auto placement = placement_;
    placement.corner = corner;
    placement.moved.reset();
    change(placement);
  };
  actions.moved = [this](Point position) {
    auto placement = placement_;
    placement.moved = position;
    change(placement);
  };
  actions.refresh = [this] {
    wantsTimeline_ = true;
    askNext();
  };
  actions.quit = quit_;
  actions.screenChanged = [this] {
    wantsSnapshot_ = true;
    rememberScale();
  };
  return actions;
}

void Host::openWindow() {
  window_ = std::make_unique<WidgetWindow>(actions());
  rememberScale();
  if (auto early = std::exchange(early_, std::nullopt))
    finished(early->first, std::move(early->second));
}

/// Places the window anew, and keeps the scale, so that the first picture of the next start has
/// the right one at once.
void Host::rememberScale() {
  auto placement = placement_;
  placement.lastScale = window_->scale();
  change(placement);
}

void Host::apply(const CommandLine& line) {
  if (line.widget) {
    program_ = std::make_unique<WidgetProgram>(*line.widget);
    wantsSnapshot_ = wantsTimeline_ = true;
    lastFailure_.reset();
  }
  change(applied(line, placement_));
}

void Host::change(Placement placement) {
  const bool redraw = placement.family != placement_.family;
  if (placement != placement_ && !savePlacement(placement, placementFile()))
    g_printerr("velmora-desktop: cannot write %s\n", placementFile().c_str());
  placement_ = std::move(placement);
  if (window_) window_->place(placement_);
  wantsSnapshot_ = wantsSnapshot_ || redraw;
  askNext();
}

/// Asks the next question, if there is one and no program runs. What is at hand comes first.
void Host::askNext() {
  if (program_->isRunning()) return;
  if (wantsSnapshot_) {
    wantsSnapshot_ = false;
    ask(false);
  } else if (wantsTimeline_) {
    wantsTimeline_ = false;
    ask(true);
  }
  setTimer();
}

void Host::ask(bool timeline) {
  const auto size = familySize(placement_.family);
  const int pixels = scale();
  const Question question{.timeline = timeline,
                          .family = placement_.family,
                          .scale = pixels,
                          .width = size.width * pixels,
                          .height = size.height * pixels};
  schedule_.runDeadline = wallClock() + longestRun;
  program_->ask(question, [this, question](RunResult result) {
    schedule_.runDeadline.reset();
    if (question.timeline)
      schedule_ =
          rescheduled(result.answer ? result.answer->reloadDate : std::nullopt, wallClock());
    finished(question, std::move(result));
  });
}

void Host::finished(const Question& question, RunResult result) {
  if (!window_) {
    early_ = {question, std::move(result)};
    return;
  }
  const bool stillFits = question.family == placement_.family && question.scale == scale();
  if (!result.answer) {
    if (lastFailure_ != result.failure)
      g_printerr("velmora-desktop: no answer from the widget program: %s\n",
                 result.failure.c_str());
    lastFailure_ = result.failure;
  } else if (stillFits) {
    window_->show(std::move(result.picture), question.scale, result.answer->phrases);
    lastFailure_.reset();
  }
  if (result.answer && !stillFits) wantsSnapshot_ = true;
  askNext();
}

void Host::lookAtClock() {
  const double now = wallClock();
  // A clock that was set back must not give a program more time than it has.
  if (schedule_.runDeadline)
    schedule_.runDeadline = std::min(*schedule_.runDeadline, now + longestRun);
  if (isRunOverdue(schedule_, now)) {
    program_->kill();
    schedule_.runDeadline = now + longestRun;
  } else if (!program_->isRunning() && isReloadDue(schedule_, now)) {
    schedule_ = rescheduled(std::nullopt, now);
    wantsTimeline_ = true;
    askNext();
  }
  setTimer();
}

void Host::setTimer() { timer_.set(nextChange(schedule_, wallClock())); }

}  // namespace desktop
