#include "desktop/screens/x11_pointer.hpp"

#include <X11/keysym.h>
#include <xcb/xcb_keysyms.h>

#include "desktop/screens/monitors.hpp"

namespace desktop {

namespace {

enum : xcb_button_t { firstButton = 1, thirdButton = 3 };

using KeySymbols = platform::Owned<xcb_key_symbols_t, xcb_key_symbols_free>;

/// The keyboard may have changed since the last key, and is not kept for the sake of one.
xcb_keysym_t symbolOf(const X11Display& display, xcb_key_press_event_t& event) {
  const KeySymbols symbols(xcb_key_symbols_alloc(display.connection()));
  return symbols ? xcb_key_press_lookup_keysym(symbols.get(), &event, 0) : XCB_NO_SYMBOL;
}

/// For a program that opens a window: when the user asked for it (startup notification).
std::string startupAt(xcb_timestamp_t time) {
  return "velmora-desktop_TIME" + std::to_string(time);
}

}  // namespace

void X11Pointer::handle(const xcb_generic_event_t& event, Scale scale) {
  switch (event.response_type & 0x7fU) {
    case XCB_BUTTON_PRESS:
      return press(reinterpret_cast<const xcb_button_press_event_t&>(event));
    case XCB_MOTION_NOTIFY:
      return move(reinterpret_cast<const xcb_motion_notify_event_t&>(event), scale);
    case XCB_BUTTON_RELEASE:
      return release(reinterpret_cast<const xcb_button_release_event_t&>(event));
    case XCB_KEY_PRESS:
      return key(reinterpret_cast<const xcb_key_press_event_t&>(event));
    default:
      return;
  }
}

void X11Pointer::press(const xcb_button_press_event_t& event) {
  if (event.detail != firstButton) return;
  window_.takeFocus(event.time);  // so that its menu can be had by key
  pressedAt_ = Point{event.root_x, event.root_y};
  grabbedAt_ = {event.event_x, event.event_y};
  isDragging_ = false;
}

void X11Pointer::move(const xcb_motion_notify_event_t& event, Scale scale) {
  if (!pressedAt_) return;
  isDragging_ = isDragging_ || isDrag(points(event.root_x - pressedAt_->x, scale),
                                      points(event.root_y - pressedAt_->y, scale));
  if (isDragging_) actions_.moved({event.root_x - grabbedAt_.x, event.root_y - grabbedAt_.y});
}

void X11Pointer::release(const xcb_button_release_event_t& event) {
  // Not on the press: the menu's program could not grab the pointer yet.
  if (event.detail == thirdButton) actions_.menuAsked({event.root_x, event.root_y});
  if (event.detail != firstButton || !pressedAt_) return;
  pressedAt_.reset();
  if (isDragging_) {
    actions_.dragged({event.root_x - grabbedAt_.x, event.root_y - grabbedAt_.y});
  } else {
    actions_.opened(startupAt(event.time));
  }
}

void X11Pointer::key(xcb_key_press_event_t event) {
  const auto symbol = symbolOf(display_, event);
  const bool shifted = (event.state & XCB_MOD_MASK_SHIFT) != 0;
  if (symbol == XK_Return || symbol == XK_KP_Enter) {
    actions_.opened(startupAt(event.time));
  } else if (symbol == XK_Menu || (symbol == XK_F10 && shifted)) {
    const auto at = window_.position();
    const auto size = window_.size();
    actions_.menuAsked({at.x + size.width / 2, at.y + size.height / 2});
  }
}

}  // namespace desktop
