#include "desktop/screens/wayland_screen.hpp"

#include "desktop/screens/event_source.hpp"
#include "desktop/screens/wayland_activation.hpp"
#include "desktop/screens/wayland_drag.hpp"

namespace desktop {

namespace {

using Kind = WaylandSurface::Kind;

class WaylandScreen : public Screen {
 public:
  WaylandScreen(std::unique_ptr<WaylandDisplay> display, ScreenEvents events,
                const Placement& placement);

  void place(const Placement& placement) override;
  void show(const Picture& picture, const Look& look) override;
  [[nodiscard]] std::optional<Look> shown() const override { return shown_; }
  [[nodiscard]] std::optional<Scale> scale() const override;
  [[nodiscard]] const char* kind() const override { return "wayland"; }

 private:
  InputEvents inputEvents();
  void dispatch(bool readable);
  void act();
  void followOutputs();
  void lookAtProbe();
  void proceedWithDrag();
  void report();
  void probe();
  void putInPlace();
  void present();
  [[nodiscard]] const WaylandOutput* chosenOutput() const;
  [[nodiscard]] Extent size() const;
  [[nodiscard]] Point origin() const;
  void dropAt(Point target);

  std::unique_ptr<WaylandDisplay> display_;
  ScreenEvents events_;
  Placement placement_;
  std::unique_ptr<WaylandInput> input_;
  std::optional<std::uint32_t> output_;  // the number of the one it stands on
  std::unique_ptr<WaylandSurface> surface_;
  std::unique_ptr<WaylandSurface> probe_;
  std::optional<Extent> free_;  // what panels leave of the output
  Anchorage anchorage_;
  WaylandBuffer picture_;
  std::optional<Look> shown_;
  std::optional<Scale> reportedScale_;
  std::unique_ptr<WaylandDrag> drag_;
  std::unique_ptr<WaylandActivation> activation_;
  // What the events of one round ask for.
  bool lost_ = false;
  bool outputsChanged_ = false;
  bool opened_ = false;
  std::optional<std::string> startup_;
  std::optional<Point> menuAt_;
  std::unique_ptr<EventSource> source_;
};

WaylandScreen::WaylandScreen(std::unique_ptr<WaylandDisplay> display, ScreenEvents events,
                             const Placement& placement)
    : display_(std::move(display)), events_(std::move(events)), placement_(placement) {
  if (auto seat = display_->bindSeat())
    input_ = std::make_unique<WaylandInput>(*display_, std::move(seat), inputEvents());
  display_->outputsChanged = [this] { outputsChanged_ = true; };
  followOutputs();
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

/// Called while events are read: they only note what is to be done.
InputEvents WaylandScreen::inputEvents() {
  InputEvents events;
  events.pressed = [this](PointerPlace place) {
    // Without a viewport the surface cannot be made transparent in its place.
    drag_ = std::make_unique<WaylandDrag>(place);
    probe();
  };
  events.moved = [this](PointerPlace place) {
    if (drag_ && display_->viewporter() != nullptr) drag_->move(place);
  };
  events.released = [this] {
    if (drag_ && drag_->isOver()) return;
    if (drag_ && !drag_->release() && drag_->isOver()) opened_ = true;
  };
  events.menuAsked = [this](PointerPlace place) {
    menuAt_ = Point{origin().x + static_cast<int>(place.x), origin().y + static_cast<int>(place.y)};
  };
  events.returnPressed = [this] { opened_ = true; };
  events.menuKeyPressed = [this] {
    menuAt_ = Point{origin().x + size().width / 2, origin().y + size().height / 2};
  };
  return events;
}

const WaylandOutput* WaylandScreen::chosenOutput() const {
  const auto outputs = display_->outputs();
  std::vector<Monitor> monitors;
  for (const auto* output : outputs) monitors.push_back(output->monitor());
  const int chosen = chosenMonitor(monitors, placement_.monitor);
  return chosen < 0 ? nullptr : outputs[static_cast<std::size_t>(chosen)];
}

Extent WaylandScreen::size() const {
  return familySize(shown_ ? shown_->family : placement_.family);
}

/// The top left corner in the free area.
Point WaylandScreen::origin() const {
  const auto [x, y] = anchorage_.margins;
  const auto area = free_.value_or(Extent{});
  return {isLeft(anchorage_.corner) ? x : area.width - size().width - x,
          isTop(anchorage_.corner) ? y : area.height - size().height - y};
}

std::optional<Scale> WaylandScreen::scale() const {
  const auto* output = chosenOutput();
  if (output == nullptr || !surface_ || !surface_->configured()) return std::nullopt;
  if (const auto told = surface_->preferredScale()) return told;
  return output->scale(display_->viewporter() != nullptr);
}

void WaylandScreen::place(const Placement& placement) {
  placement_ = placement;
  followOutputs();
  probe();
}

void WaylandScreen::show(const Picture& picture, const Look& look) {
  picture_ = makeBuffer(display_->sharedMemory(), picture.get());
  const bool resized = !shown_ || shown_->family != look.family;
  shown_ = look;
  if (!surface_ || !free_ || (drag_ && drag_->isMoving())) return;
  if (resized) {
    surface_->setSize(size());
    putInPlace();
  }
  present();
}

/// Shows the picture on a surface that is ready for it.
void WaylandScreen::present() {
  if (!surface_ || !surface_->configured() || !free_ || !picture_) return;
  surface_->setPicture(picture_.get(), size(), shown_->scale);
  surface_->commit();
}

/// Learns what panels leave free of the output. A surface that fills it is told its size, before
/// anything of it is seen.
void WaylandScreen::probe() {
  const auto* output = chosenOutput();
  if (output == nullptr) return;
  probe_ = std::make_unique<WaylandSurface>(*display_, *output, Kind::probe, Extent{});
  probe_->commit();
}

void WaylandScreen::putInPlace() {
  const Area area{0, 0, free_->width, free_->height};
  const auto [x, y] = position(placement_, size(), area, {});
  // From the nearest corner, so that a panel that comes later does not push it off the screen.
  anchorage_.corner = placement_.moved ? nearestCorner({x, y}, size(), area) : placement_.corner;
  anchorage_.margins = {isLeft(anchorage_.corner) ? x : area.width - size().width - x,
                        isTop(anchorage_.corner) ? y : area.height - size().height - y};
  surface_->setPlace(anchorage_);
  surface_->commit();
}

/// Has a surface on the right output, if there is one.
void WaylandScreen::followOutputs() {
  const auto* output = chosenOutput();
  const bool isOnIt = surface_ && output != nullptr && output_ == output->number();
  // An output that takes no surface at all is not asked again before something has changed.
  if (isOnIt && (!surface_->isClosed() || (!surface_->configured() && !outputsChanged_))) return;
  outputsChanged_ = false;
  drag_.reset();
  probe_.reset();
  surface_.reset();
  free_.reset();
  output_.reset();
  if (output == nullptr) return;
  output_ = output->number();
  surface_ = std::make_unique<WaylandSurface>(*display_, *output, Kind::widget, size());
  surface_->setPlace({placement_.corner, {}});
  surface_->commit();
  probe();
}

void WaylandScreen::lookAtProbe() {
  if (!probe_ || !probe_->configured() || !surface_ || !surface_->configured()) return;
  const auto area = probe_->configured();
  probe_.reset();
  const bool isFirst = !free_;
  free_ = area;
  if (drag_ && drag_->isMoving()) return;
  putInPlace();
  if (isFirst) present();
  if (!drag_ || !drag_->isReleased()) return;
  surface_->askFrame();
  present();
  drag_->land();
}

void WaylandScreen::proceedWithDrag() {
  if (!drag_ || !surface_ || !free_ || !picture_) return;
  const bool wasReleased = drag_->isReleased();
  drag_->proceed(*display_,
                 {surface_.get(), chosenOutput(), picture_.get(), size(), shown_->scale, origin()});
  if (wasReleased && !probe_) dropAt(drag_->target());
  if (drag_ && drag_->isOver()) drag_.reset();  // a drop on another output has ended it already
}

/// Keeps the place, perhaps on another output; the surface follows.
void WaylandScreen::dropAt(Point target) {
  const auto outputs = display_->outputs();
  std::vector<Monitor> monitors;
  for (const auto* output : outputs) monitors.push_back(output->monitor());
  const auto here = chosenOutput()->monitor().area;
  const Point onScreen{here.x + target.x, here.y + target.y};
  const int nearest =
      monitorAt(monitors, {onScreen.x + size().width / 2, onScreen.y + size().height / 2});
  const auto& monitor = monitors.at(static_cast<std::size_t>(nearest));
  events_.moved(monitor.name, {onScreen.x - monitor.area.x, onScreen.y - monitor.area.y});
}

void WaylandScreen::dispatch(bool readable) {
  const int count = readable ? wl_display_dispatch(display_->handle())
                             : wl_display_dispatch_pending(display_->handle());
  if (count >= 0) {
    act();
  } else if (!std::exchange(lost_, true)) {
    events_.lost();
  }
}

/// Does once what a whole round of events asks for: a compositor may tell one scale and, in the
/// same breath, another.
void WaylandScreen::act() {
  followOutputs();
  lookAtProbe();
  proceedWithDrag();
  report();
}

void WaylandScreen::report() {
  if (const auto known = scale(); known && known != reportedScale_) {
    reportedScale_ = known;
    events_.changed();
  }
  if (std::exchange(opened_, false) && surface_)
    activation_ = std::make_unique<WaylandActivation>(
        *display_, input_->seat(), input_->serial(), surface_->handle(),
        [this](const std::string& token) { startup_ = token; });
  if (const auto startup = std::exchange(startup_, std::nullopt)) {
    activation_.reset();
    events_.opened(*startup);
  }
  if (const auto at = std::exchange(menuAt_, std::nullopt); at && output_)
    events_.menuAsked({*at, chosenOutput()->monitor().name});
}

}  // namespace

std::unique_ptr<Screen> openWayland(std::unique_ptr<WaylandDisplay> display,
                                    const ScreenEvents& events, const Placement& placement) {
  return std::make_unique<WaylandScreen>(std::move(display), events, placement);
}

}  // namespace desktop
