#include "desktop/screens/x11_screen.hpp"

#include <xcb/randr.h>
#include <xcb/xfixes.h>

#include "desktop/screens/event_source.hpp"
#include "desktop/screens/x11_monitors.hpp"
#include "desktop/screens/x11_scale.hpp"
#include "desktop/screens/x11_widget.hpp"

namespace desktop {

namespace {

using Event = X11Owned<xcb_generic_event_t>;

class X11Screen : public Screen {
 public:
  X11Screen(ScreenEvents events, const Placement& placement);

  void place(const Placement& placement) override;
  void show(const Picture& picture, const Look& look) override;
  [[nodiscard]] std::optional<Look> shown() const override { return shown_; }
  [[nodiscard]] std::optional<Scale> scale() const override { return scale_; }
  [[nodiscard]] const char* kind() const override { return "x11"; }

 private:
  void watchRoot();
  [[nodiscard]] bool isComposited() const;
  [[nodiscard]] Point whereToStand(Extent size) const;
  void dispatch();
  void handle(const xcb_generic_event_t& event);
  void handleMessage(const xcb_client_message_event_t& message);
  void handleProperty(xcb_atom_t atom);
  void act();
  void follow();
  void dragged(Point position);
  PointerActions pointerActions();

  ScreenEvents events_;
  Placement placement_;
  std::shared_ptr<const X11Display> display_;
  X11Widget widget_;
  std::optional<Look> shown_;
  Scale scale_;
  std::uint8_t monitorEvents_ = 0;
  std::uint8_t selectionEvents_ = 0;
  Event queued_;  // read while the library waited for something else
  // What the events of one round ask for.
  bool rescale_ = false;
  bool replace_ = false;
  bool followWorkArea_ = false;
  bool recompose_ = false;
  bool restand_ = false;
  bool lost_ = false;
  std::unique_ptr<EventSource> source_;
};

X11Screen::X11Screen(ScreenEvents events, const Placement& placement)
    : events_(std::move(events)),
      placement_(placement),
      display_(std::make_shared<X11Display>()),
      widget_(display_, pointerActions()) {
  watchRoot();
  scale_ = sessionScale(*display_);
  widget_.setScale(scale_);
  widget_.setComposited(isComposited());
  widget_.setStanding(wantedStanding(*display_));
  auto* connection = display_->connection();
  source_ = std::make_unique<EventSource>(
      xcb_get_file_descriptor(connection),
      [this] {
        xcb_flush(display_->connection());
        if (!queued_) queued_.reset(xcb_poll_for_queued_event(display_->connection()));
        return queued_ || xcb_connection_has_error(display_->connection()) != 0;
      },
      [this](bool) { dispatch(); });
}

void X11Screen::watchRoot() {
  auto* connection = display_->connection();
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection, display_->root(), XCB_CW_EVENT_MASK, &events);
  if (const auto* randr = xcb_get_extension_data(connection, &xcb_randr_id);
      randr != nullptr && randr->present != 0) {
    monitorEvents_ = randr->first_event;
    xcb_randr_select_input(connection, display_->root(),
                           XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                               XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
  }
  if (const auto* fixes = xcb_get_extension_data(connection, &xcb_xfixes_id);
      fixes != nullptr && fixes->present != 0) {
    selectionEvents_ = fixes->first_event;
    const X11Owned<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
        connection, xcb_xfixes_query_version(connection, 5, 0), nullptr));
    xcb_xfixes_select_selection_input(connection, display_->root(), display_->compositorSelection(),
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
  }
}

bool X11Screen::isComposited() const {
  return display_->owner(display_->compositorSelection()) != XCB_WINDOW_NONE;
}

PointerActions X11Screen::pointerActions() {
  return {.dragged = [this](Point position) { dragged(position); },
          .opened = events_.opened,
          .menuAsked = [this](Point at) { events_.menuAsked({at, {}}); }};
}

Point X11Screen::whereToStand(Extent size) const {
  const auto monitors = screenMonitors(*display_);
  const int chosen = chosenMonitor(monitors, placement_.monitor);
  const auto area = workArea(*display_, monitors.at(static_cast<std::size_t>(chosen)));
  return position(placement_, size, area, scale_);
}

void X11Screen::place(const Placement& placement) {
  placement_ = placement;
  if (shown_) widget_.moveTo(whereToStand(widget_.size()));
}

void X11Screen::show(const Picture& picture, const Look& look) {
  widget_.show(picture.get(), whereToStand(pictureSize(look)));
  shown_ = look;
}

void X11Screen::dragged(Point position) {
  const auto size = widget_.size();
  const auto monitors = screenMonitors(*display_);
  const int nearest =
      monitorAt(monitors, {position.x + size.width / 2, position.y + size.height / 2});
  const auto& monitor = monitors.at(static_cast<std::size_t>(nearest));
  const auto area = workArea(*display_, monitor);
  events_.moved(monitor.name,
                {points(position.x - area.x, scale_), points(position.y - area.y, scale_)});
}

void X11Screen::dispatch() {
  auto event = std::move(queued_);
  if (!event) event.reset(xcb_poll_for_event(display_->connection()));
  for (; event; event.reset(xcb_poll_for_event(display_->connection()))) handle(*event);
  if (xcb_connection_has_error(display_->connection()) == 0) {
    act();
  } else if (!std::exchange(lost_, true)) {
    events_.lost();
  }
}

void X11Screen::handle(const xcb_generic_event_t& event) {
  widget_.handle(event);
  const unsigned type = event.response_type & 0x7fU;
  if (type == XCB_PROPERTY_NOTIFY) {
    handleProperty(reinterpret_cast<const xcb_property_notify_event_t&>(event).atom);
  } else if (type == XCB_CLIENT_MESSAGE) {
    handleMessage(reinterpret_cast<const xcb_client_message_event_t&>(event));
  } else if (type == XCB_DESTROY_NOTIFY) {
    rescale_ = true;  // perhaps the settings manager's window
  } else if (selectionEvents_ != 0 && type == selectionEvents_) {
    recompose_ = true;
  } else if (monitorEvents_ != 0 && (type == monitorEvents_ || type == monitorEvents_ + 1U)) {
    replace_ = true;
  }
}

void X11Screen::handleProperty(xcb_atom_t atom) {
  const auto is = [&](std::string_view name) { return atom == display_->atom(name); };
  if (is("_XSETTINGS_SETTINGS") || is("RESOURCE_MANAGER")) rescale_ = true;
  if (is("_NET_SUPPORTING_WM_CHECK")) restand_ = true;
  if (is("_NET_WORKAREA") || is("_NET_CURRENT_DESKTOP") || is("_GTK_WORKAREAS_D0"))
    followWorkArea_ = true;
}

void X11Screen::handleMessage(const xcb_client_message_event_t& message) {
  if (message.type == display_->atom("MANAGER")) {
    rescale_ = true;  // perhaps a settings manager
  } else if (message.data.data32[0] == display_->atom("WM_DELETE_WINDOW")) {
    events_.closed();
  } else if (message.data.data32[0] == display_->atom("_NET_WM_PING")) {
    auto answer = message;
    answer.window = display_->root();
    xcb_send_event(display_->connection(), 0, display_->root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&answer));
  }
}

/// Moves with what panels leave, but asks for no place twice: a window manager that has its own
/// idea of the place may answer with the same work area each time.
void X11Screen::follow() {
  if (shown_ && whereToStand(widget_.size()) != widget_.place()) place(placement_);
}

/// Does once what a whole round of events asks for.
void X11Screen::act() {
  const auto scale = std::exchange(rescale_, false) ? sessionScale(*display_) : scale_;
  const bool changed = std::exchange(scale_, scale) != scale;
  widget_.setScale(scale);
  if (std::exchange(recompose_, false)) widget_.setComposited(isComposited());
  if (std::exchange(restand_, false)) widget_.setStanding(wantedStanding(*display_));
  widget_.settle();
  if (std::exchange(followWorkArea_, false)) follow();
  if (std::exchange(replace_, false)) place(placement_);
  if (changed) events_.changed();
}

}  // namespace

std::unique_ptr<Screen> openX11(const ScreenEvents& events, const Placement& placement) {
  return std::make_unique<X11Screen>(events, placement);
}

}  // namespace desktop
