#include "desktop/host.hpp"

#include <glib.h>
#include <malloc.h>

#include <utility>

namespace desktop {

Host::Host(const CommandLine& line, std::string program, std::function<void()> quit)
    : quit_(std::move(quit)),
      placement_(loadPlacement(placementFile())),
      schedule_(rescheduled(std::nullopt, wallClock())),
      program_(std::make_unique<WidgetProgram>(std::move(program))),
      timer_([this] { lookAtClock(); }) {
  placement_ = applied(line, placement_);
  askNext();
}

Host::~Host() {
  if (soon_ != 0) g_source_remove(soon_);
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
  actions.moved = [this](const std::string& monitor, Point position) {
    auto placement = placement_;
    if (!monitor.empty()) placement.monitor = monitor;
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
  save();  // the choices of this call
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

void Host::save() const {
  if (!savePlacement(placement_, placementFile()))
    g_printerr("velmora-desktop: cannot write %s\n", placementFile().c_str());
}

void Host::change(Placement placement) {
  const bool redraw = placement.family != placement_.family;
  const bool changed = placement != placement_;
  placement_ = std::move(placement);
  if (changed) save();
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
  askedAt_ = runningTime();
  program_->ask(question, [this, question](RunResult result) {
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
  // The picture is painted before the next program is started.
  if (soon_ == 0) soon_ = g_idle_add_full(G_PRIORITY_LOW, askSoon, this, nullptr);
}

gboolean Host::askSoon(gpointer host) {
  auto* self = static_cast<Host*>(host);
  self->soon_ = 0;
  malloc_trim(0);  // half an hour of waiting may follow; what starting up took can go
  self->askNext();
  return G_SOURCE_REMOVE;
}

void Host::lookAtClock() {
  const double now = wallClock();
  if (isRunOverdue(current())) {
    program_->kill();
  } else if (!program_->isRunning() && isReloadDue(schedule_, now)) {
    schedule_ = rescheduled(std::nullopt, now);
    wantsTimeline_ = true;
    askNext();
  }
  setTimer();
}

Schedule Host::current() const {
  auto schedule = schedule_;
  if (program_->isRunning()) schedule.running = runningTime() - askedAt_;
  return schedule;
}

void Host::setTimer() { timer_.set(nextChange(current(), wallClock())); }

}  // namespace desktop
