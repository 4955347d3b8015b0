#include "desktop/screens/x11_widget.hpp"

namespace desktop {

X11Widget::X11Widget(std::shared_ptr<const X11Display> display, PointerActions actions)
    : display_(std::move(display)),
      actions_(std::move(actions)),
      visual_(widgetVisual(*display_)),
      floor_([this] { open(); }) {
  actions_.moved = [this](Point position) { moveTo(position); };
}

void X11Widget::show(cairo_surface_t* picture, Point position) {
  picture_ = std::make_unique<X11Picture>(display_, visual_, picture);
  place_ = position;
  if (!floor_.mayTry()) return;  // until it comes back
  if (!window_) return open();
  window_->show(*picture_, place_);
  shape();
}

void X11Widget::open() {
  floor_.noteTry();
  window_ = std::make_unique<X11Window>(display_, visual_, standing_);
  pointer_ = std::make_unique<X11Pointer>(*display_, *window_, actions_);
  hasAppeared_ = isInDoubt_ = false;
  window_->show(*picture_, place_);
  shape();
  window_->map();
}

void X11Widget::shape() const {
  if (isComposited_ && visual_.isTransparent) {
    window_->uncut();
  } else {
    window_->cut(*picture_);
  }
}

void X11Widget::moveTo(Point position) {
  place_ = position;
  if (window_) window_->moveTo(place_);
}

void X11Widget::setComposited(bool composited) {
  isComposited_ = composited;
  if (window_) shape();
}

void X11Widget::setStanding(Standing standing) {
  if (std::exchange(standing_, standing) == standing || !window_) return;
  pointer_.reset();
  open();
}

void X11Widget::handle(const xcb_generic_event_t& event) {
  switch (event.response_type & 0x7fU) {
    case XCB_MAP_NOTIFY:
      if (isOwn(reinterpret_cast<const xcb_map_notify_event_t&>(event).window)) hasAppeared_ = true;
      return;
    case XCB_UNMAP_NOTIFY:
      return doubt(reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window);
    case XCB_DESTROY_NOTIFY:
      return doubt(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
    case XCB_PROPERTY_NOTIFY: {
      const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
      if (hasAppeared_ && change.atom == display_->atom("WM_STATE")) doubt(change.window);
      return;
    }
    default:
      if (pointer_) pointer_->handle(event, scale_);
  }
}

void X11Widget::doubt(xcb_window_t window) { isInDoubt_ = isInDoubt_ || isOwn(window); }

void X11Widget::settle() {
  if (!std::exchange(isInDoubt_, false) || window_->isShown()) return;
  pointer_.reset();
  window_.reset();
  floor_.noteFailure(true);
  if (floor_.mayTry()) open();
}

}  // namespace desktop
