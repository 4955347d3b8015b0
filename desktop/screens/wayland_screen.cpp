#include "desktop/screens/wayland_screen.hpp"

#include <stdexcept>

#include "desktop/screens/event_source.hpp"
#include "desktop/screens/retry_floor.hpp"
#include "desktop/screens/wayland_activation.hpp"
#include "desktop/screens/wayland_input.hpp"
#include "desktop/screens/wayland_stand.hpp"

namespace desktop {

namespace {

class WaylandScreen : public Screen {
 public:
  WaylandScreen(std::unique_ptr<WaylandDisplay> display, ScreenEvents events,
                const Placement& placement);

  void place(const Placement& placement) override;
  void show(const Picture& picture, const Look& look) override;
  [[nodiscard]] std::optional<Look> shown() const override;
  [[nodiscard]] std::optional<Scale> scale() const override;
  [[nodiscard]] const char* kind() const override { return "wayland"; }

 private:
  void dispatch(bool readable);
  void act();
  void handle(const InputEvent& event);
  void endPress(const InputEvent& event);
  void drop(Point target);
  void open(const InputEvent& event);
  void askMenu(Point onWidget);
  void settle();
  void endLostStand();
  void report();
  [[nodiscard]] const WaylandOutput* chosenOutput() const;
  [[nodiscard]] Extent size() const;

  std::unique_ptr<WaylandDisplay> display_;
  ScreenEvents events_;
  Placement placement_;
  std::optional<Shown> shown_;
  WaylandInput input_;
  RetryFloor floor_;
  std::unique_ptr<WaylandStand> stand_;  // none while there is no output that takes it
  std::unique_ptr<WaylandActivation> activation_;
  std::optional<Scale> reportedScale_;
  bool lost_ = false;
  std::unique_ptr<EventSource> source_;
};

WaylandScreen::WaylandScreen(std::unique_ptr<WaylandDisplay> display, ScreenEvents events,
                             const Placement& placement)
    : display_(std::move(display)),
      events_(std::move(events)),
      placement_(placement),
      input_(*display_),
      floor_([this] { act(); }) {
  act();
  source_ = std::make_unique<EventSource>(
      wl_display_get_fd(display_->handle()),
      [this] {
        if (wl_display_prepare_read(display_->handle()) != 0) return true;
        wl_display_cancel_read(display_->handle());
        wl_display_flush(display_->handle());
        return wl_display_get_error(display_->handle()) != 0;
      },
      [this](bool readable) { dispatch(readable); });
}

std::vector<Monitor> monitorsOf(const std::vector<const WaylandOutput*>& outputs) {
  std::vector<Monitor> monitors;
  for (const auto* output : outputs) monitors.push_back(output->monitor());
  return monitors;
}

const WaylandOutput* WaylandScreen::chosenOutput() const {
  const auto outputs = display_->outputs();
  const int chosen = chosenMonitor(monitorsOf(outputs), placement_.monitor);
  return chosen < 0 ? nullptr : outputs[static_cast<std::size_t>(chosen)];
}

Extent WaylandScreen::size() const {
  return sizeInPoints(shown_ ? shown_->look.family : placement_.family);
}

std::optional<Look> WaylandScreen::shown() const {
  return shown_ ? std::optional(shown_->look) : std::nullopt;
}

std::optional<Scale> WaylandScreen::scale() const {
  const auto* output = chosenOutput();
  return stand_ && output != nullptr ? stand_->scale(*output) : std::nullopt;
}

void WaylandScreen::place(const Placement& placement) {
  placement_ = placement;
  settle();
}

void WaylandScreen::show(const Picture& picture, const Look& look) {
  shown_ = {makeBuffer(display_->sharedMemory(), picture.get()), look};
  settle();
}

void WaylandScreen::dispatch(bool readable) {
  if (display_->dispatch(readable)) {
    act();
  } else if (!std::exchange(lost_, true)) {
    events_.lost();
  }
}

/// Does what a whole round of events asks for: a compositor may tell one scale and, in the same
/// breath, another.
void WaylandScreen::act() {
  settle();  // what users did, they did to the widget as it stands now
  for (const auto& event : input_.take()) handle(event);
  settle();
  report();
}

void WaylandScreen::handle(const InputEvent& event) {
  if (!stand_) return;
  const Point at{static_cast<int>(event.place.x), static_cast<int>(event.place.y)};
  switch (event.kind) {
    case InputEvent::Kind::pressed:
      return stand_->press(event.place);
    case InputEvent::Kind::moved:
      return stand_->move(event.place);
    case InputEvent::Kind::released:
      return endPress(event);
    case InputEvent::Kind::interrupted:
      return stand_->interrupt();
    case InputEvent::Kind::menuAsked:
      return askMenu(at);
    case InputEvent::Kind::returnPressed:
      return open(event);
    case InputEvent::Kind::menuKeyPressed:
      return askMenu({size().width / 2, size().height / 2});
  }
}

void WaylandScreen::endPress(const InputEvent& event) {
  const auto release = stand_->release();
  if (release.dropped) drop(*release.dropped);
  if (release.isClick) open(event);
}

/// Has the place kept, perhaps on another output; the widget follows.
void WaylandScreen::drop(Point target) {
  const auto* output = chosenOutput();
  if (output == nullptr) return;
  const auto here = output->monitor().area;
  const auto [width, height] = size();
  const Point onScreen{here.x + target.x, here.y + target.y};
  const auto monitors = monitorsOf(display_->outputs());
  const int nearest = monitorAt(monitors, {onScreen.x + width / 2, onScreen.y + height / 2});
  const auto& monitor = monitors[static_cast<std::size_t>(nearest)];
  events_.moved(monitor.name, {onScreen.x - monitor.area.x, onScreen.y - monitor.area.y});
}

void WaylandScreen::open(const InputEvent& event) {
  activation_ =
      std::make_unique<WaylandActivation>(*display_, event.seat, event.serial, stand_->surface());
}

void WaylandScreen::askMenu(Point onWidget) {
  const auto* output = chosenOutput();
  if (output == nullptr) return;
  const auto origin = stand_->origin();
  events_.menuAsked({{origin.x + onWidget.x, origin.y + onWidget.y}, output->monitor().area});
}

/// Has the widget stand on the chosen output, if there is one, as it is wanted there.
void WaylandScreen::settle() {
  endLostStand();
  const auto* output = chosenOutput();
  if (stand_ && (output == nullptr || stand_->output() != output->number())) stand_.reset();
  if (output == nullptr) return;
  if (!stand_ && floor_.mayTry()) {
    floor_.noteTry();
    stand_ = std::make_unique<WaylandStand>(*display_, *output, size());
  }
  if (stand_ && shown_) stand_->settle(*output, placement_, *shown_);
}

/// The compositor may take it away as often as it is made.
void WaylandScreen::endLostStand() {
  if (!stand_ || (!stand_->isClosed() && display_->hasOutput(stand_->output()))) return;
  floor_.noteFailure(stand_->isSeen());
  stand_.reset();
}

void WaylandScreen::report() {
  if (const auto known = scale(); known && known != reportedScale_) {
    reportedScale_ = known;
    events_.changed();
  }
  if (const auto token = activation_ ? activation_->answer() : std::nullopt) {
    activation_.reset();
    events_.opened(*token);
  }
}

}  // namespace

std::unique_ptr<Screen> openWayland(std::unique_ptr<WaylandDisplay> display,
                                    const ScreenEvents& events, const Placement& placement) {
  if (display->compositor() == nullptr || display->sharedMemory() == nullptr)
    throw std::runtime_error(
        "this Wayland compositor takes no pictures from programs (it offers no wl_compositor or no "
        "wl_shm); use another one");
  return std::make_unique<WaylandScreen>(std::move(display), events, placement);
}

}  // namespace desktop
