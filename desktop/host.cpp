#include "desktop/host.hpp"

#include <algorithm>
#include <utility>

#include "desktop/guarded.hpp"
#include "desktop/memory.hpp"

namespace desktop {

Host::Host(const CommandLine& line, const std::string& program, GDBusConnection* bus,
           std::function<void(int)> quit)
    : quit_(std::move(quit)),
      placement_(applied(line, loadPlacement(placementFile()))),
      schedule_(rescheduled(std::nullopt, wallClock())),
      snapshot_(program),
      timeline_(program),
      timer_([this] { lookAtClock(); }),
      reader_(bus),
      network_([this] { hasten(); }),
      keyring_(bus, [this] { hasten(); }) {
  askNext();
}

Host::~Host() {
  if (soon_ != 0) g_source_remove(soon_);
}

ScreenEvents Host::events() {
  ScreenEvents events;
  events.changed = [this] { screenChanged(); };
  events.moved = [this](const std::string& monitor, Point position) {
    auto placement = placement_;
    if (!monitor.empty()) placement.monitor = monitor;
    placement.moved = position;
    change(placement);
  };
  events.opened = [this](const std::string& startup) { openCompanion(startup); };
  events.menuAsked = [this](const MenuSpot& spot) { openMenu(spot); };
  events.closed = [this] { quit_(0); };
  events.lost = [this] {
    g_printerr("velmora-desktop: the display has gone\n");
    quit_(1);
  };
  return events;
}

void Host::openDisplay() {
  screen_ = openScreen(events(), placement_);
  savePlacement(placement_, placementFile());  // the choices of this call
  screenChanged();
}

void Host::openCompanion(const std::string& startup) const {
  const auto program = findProgram("", "velmora");
  if (program.empty() || !startDetached(program, startup))
    g_printerr("velmora-desktop: velmora, which this opens, is not installed\n");
}

void Host::openMenu(const MenuSpot& spot) {
  menu_.open(spot, placement_, screen_->kind(),
             [this](const MenuChoice& choice) { choose(choice); });
}

void Host::choose(const MenuChoice& choice) {
  if (choice.command == "family" && familySize(choice.name).width > 0) {
    auto placement = placement_;
    placement.family = choice.name;
    change(placement);
  } else if (choice.command == "corner") {
    if (const auto corner = cornerFromName(choice.name)) chooseCorner(*corner);
  } else if (choice.command == "refresh") {
    refresh();
  } else if (choice.command == "open") {
    openCompanion(choice.name);
  } else if (choice.command == "quit") {
    quit_(0);
  }
}

void Host::chooseCorner(Corner corner) {
  auto placement = placement_;
  placement.corner = corner;
  placement.moved.reset();
  change(placement);
}

void Host::apply(const CommandLine& line) {
  change(applied(line, placement_));
  if (line.refresh) refresh();
}

void Host::change(Placement placement) {
  const bool changed = placement != placement_;
  placement_ = std::move(placement);
  if (changed) savePlacement(placement_, placementFile());
  if (screen_) screen_->place(placement_);
  follow();
}

/// Keeps the scale, so that the first picture of the next start has the right one at once, and
/// shows what came before the scale was known.
void Host::screenChanged() {
  const auto scale = screen_->scale();
  if (scale && placement_.lastScale != *scale) {
    placement_.lastScale = *scale;
    savePlacement(placement_, placementFile());
  }
  if (auto early = scale ? std::exchange(early_, std::nullopt) : std::nullopt)
    ended(early->first, std::move(early->second));
  follow();
}

Look Host::wanted() const {
  const auto scale = screen_ ? screen_->scale() : std::nullopt;
  return {placement_.family, scale.value_or(placement_.lastScale)};
}

bool Host::showsWanted() const { return screen_ && screen_->shown() == wanted(); }

void Host::refresh() {
  wantsTimeline_ = true;
  askNext();
}

/// Something that the last timeline lacked has come.
void Host::hasten() {
  hastens_ = timeline_.isRunning();
  schedule_ = hastened(schedule_, timelineAskedAt_, wallClock());
  setTimer();
}

/// Asks for the figures at hand when something else is to be seen than is, or is on its way.
void Host::follow() {
  const auto look = wanted();
  const bool isComing = (snapshot_.isRunning() && snapshot_.question().look == look) ||
                        (early_ && early_->first.look == look);
  if (!showsWanted() && !isComing) {
    snapshot_.end();
    wantsSnapshot_ = true;
  }
  askNext();
}

/// Asks what is to be asked. The figures at hand come first, beside a timeline that is being
/// fetched; a new timeline waits for them, so that they are seen as soon as possible.
void Host::askNext() {
  if (wantsSnapshot_ && !snapshot_.isRunning()) {
    wantsSnapshot_ = false;
    snapshotStartedAt_ = runningTime();
    ask(snapshot_, false);
  }
  if (wantsTimeline_ && !snapshot_.isRunning() && !timeline_.isRunning()) {
    wantsTimeline_ = false;
    timelineStartedAt_ = runningTime();
    timelineAskedAt_ = wallClock();
    network_.noteQuestion();
    ask(timeline_, true);
  }
  setTimer();
}

void Host::ask(WidgetProgram& program, bool timeline) {
  const Question question{timeline, wanted()};
  program.ask(question, [this, question](RunResult result) {
    if (question.timeline) timelineEnded(result);
    ended(question, std::move(result));
  });
}

void Host::timelineEnded(const RunResult& result) {
  const double now = wallClock();
  schedule_ = rescheduled(result.answer ? result.answer->reloadDate : std::nullopt, now);
  if (std::exchange(hastens_, false)) schedule_ = hastened(schedule_, timelineAskedAt_, now);
  if (result.answer) keyring_.noteAnswer(result.answer->isConnected);
}

void Host::ended(const Question& question, RunResult result) {
  if (result.answer && (!screen_ || !screen_->scale())) {
    early_ = {question, std::move(result)};
  } else if (!result.answer) {
    fail(question, result.failure);
  } else if (question.look == wanted()) {
    if (question.timeline) snapshot_.end();  // which is older
    screen_->show(result.picture, question.look);
    reader_.say(result.answer->phrases);
    lastFailure_.reset();
    failures_ = 0;
  } else if (!showsWanted() && !snapshot_.isRunning()) {
    wantsSnapshot_ = true;
  }
  // The picture is painted before the next program is started.
  if (soon_ == 0) soon_ = g_idle_add_full(G_PRIORITY_LOW, askSoon, this, nullptr);
}

/// The last good picture stays. While that is none, or one of another size, it is tried again soon.
void Host::fail(const Question& question, const std::string& failure) {
  if (lastFailure_ != failure)
    g_printerr("velmora-desktop: no answer from the widget program: %s\n", failure.c_str());
  lastFailure_ = failure;
  if (showsWanted()) return;
  if (!question.timeline) ++failures_;
  const auto retry = retried(failures_, wallClock());
  schedule_.reloadDate = std::min(schedule_.reloadDate, retry.reloadDate);
}

gboolean Host::askSoon(gpointer host) {
  guarded([&] {
    auto* self = static_cast<Host*>(host);
    self->soon_ = 0;
    self->askNext();
    giveBackMemory();  // half an hour of waiting may follow
  });
  return G_SOURCE_REMOVE;
}

void Host::lookAtClock() {
  const double now = wallClock();
  const double running = runningTime();
  if (snapshot_.isRunning() && running - snapshotStartedAt_ >= longestSnapshotRun)
    snapshot_.giveUp();
  if (timeline_.isRunning() && running - timelineStartedAt_ >= longestRun) timeline_.giveUp();
  if (!timeline_.isRunning() && isReloadDue(schedule_, now)) {
    schedule_ = rescheduled(std::nullopt, now);
    wantsTimeline_ = true;
    wantsSnapshot_ = wantsSnapshot_ || (!showsWanted() && !snapshot_.isRunning());
    askNext();
  }
  setTimer();
}

void Host::setTimer() {
  auto schedule = schedule_;
  schedule.isFetching = timeline_.isRunning();
  const double running = runningTime();
  if (snapshot_.isRunning()) schedule.timeLeft = snapshotStartedAt_ + longestSnapshotRun - running;
  if (timeline_.isRunning())
    schedule.timeLeft =
        std::min(schedule.timeLeft.value_or(longestRun), timelineStartedAt_ + longestRun - running);
  timer_.set(nextChange(schedule, wallClock()));
}

}  // namespace desktop
