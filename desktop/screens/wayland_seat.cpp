#include "desktop/screens/wayland_seat.hpp"

#include <linux/input-event-codes.h>

namespace desktop {

namespace {

using Kind = InputEvent::Kind;

WaylandSeat& self(void* data) { return *static_cast<WaylandSeat*>(data); }

PointerPlace placeOf(wl_fixed_t x, wl_fixed_t y) {
  return {wl_fixed_to_double(x), wl_fixed_to_double(y)};
}

}  // namespace

const wl_seat_listener WaylandSeat::seatListener{
    .capabilities = [](void* data, wl_seat*,
                       std::uint32_t capabilities) { self(data).takeDevices(capabilities); },
    .name = [](void*, wl_seat*, const char*) {}};

const wl_pointer_listener WaylandSeat::pointerListener{
    .enter =
        [](void* data, wl_pointer* pointer, std::uint32_t serial, wl_surface*, wl_fixed_t x,
           wl_fixed_t y) {
          self(data).place_ = placeOf(x, y);
          self(data).cursor_.emplace(self(data).display_, pointer, serial);
        },
    .leave =
        [](void* data, wl_pointer*, std::uint32_t, wl_surface*) {
          self(data).cursor_.reset();
          self(data).note(Kind::interrupted);
        },
    .motion =
        [](void* data, wl_pointer*, std::uint32_t, wl_fixed_t x, wl_fixed_t y) {
          self(data).place_ = placeOf(x, y);
          self(data).note(Kind::moved);
        },
    .button =
        [](void* data, wl_pointer*, std::uint32_t serial, std::uint32_t, std::uint32_t button,
           std::uint32_t state) {
          self(data).serial_ = serial;
          self(data).press(button, state == WL_POINTER_BUTTON_STATE_PRESSED);
        },
    .axis = [](void*, wl_pointer*, std::uint32_t, std::uint32_t, wl_fixed_t) {},
    .frame = [](void*, wl_pointer*) {},
    .axis_source = [](void*, wl_pointer*, std::uint32_t) {},
    .axis_stop = [](void*, wl_pointer*, std::uint32_t, std::uint32_t) {},
    .axis_discrete = [](void*, wl_pointer*, std::uint32_t, std::int32_t) {}};

const wl_keyboard_listener WaylandSeat::keyboardListener{
    // The few keys that count are where they are on every layout.
    .keymap = [](void*, wl_keyboard*, std::uint32_t, std::int32_t descriptor,
                 std::uint32_t) { const platform::Descriptor closed(descriptor); },
    .enter = [](void*, wl_keyboard*, std::uint32_t, wl_surface*, wl_array*) {},
    .leave = [](void*, wl_keyboard*, std::uint32_t, wl_surface*) {},
    .key =
        [](void* data, wl_keyboard*, std::uint32_t serial, std::uint32_t, std::uint32_t key,
           std::uint32_t state) {
          self(data).serial_ = serial;
          if (state == WL_KEYBOARD_KEY_STATE_PRESSED) self(data).type(key);
        },
    .modifiers = [](void* data, wl_keyboard*, std::uint32_t, std::uint32_t depressed, std::uint32_t,
                    std::uint32_t,
                    std::uint32_t) { self(data).isShifted_ = (depressed & 1U) != 0; },
    .repeat_info = [](void*, wl_keyboard*, std::int32_t, std::int32_t) {}};

WaylandSeat::WaylandSeat(const WaylandDisplay& display, std::uint32_t number)
    : display_(display), number_(number), seat_(display.bindSeat(number)) {
  wl_seat_add_listener(seat_.get(), &seatListener, this);
}

void WaylandSeat::takeDevices(std::uint32_t capabilities) {
  const bool hasPointer = (capabilities & WL_SEAT_CAPABILITY_POINTER) != 0;
  const bool hasKeyboard = (capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0;
  if (!hasPointer) {
    cursor_.reset();
    pointer_.reset();
    note(Kind::interrupted);
  } else if (!pointer_) {
    pointer_.reset(wl_seat_get_pointer(seat_.get()));
    wl_pointer_add_listener(pointer_.get(), &pointerListener, this);
  }
  if (!hasKeyboard) {
    keyboard_.reset();
  } else if (!keyboard_) {
    keyboard_.reset(wl_seat_get_keyboard(seat_.get()));
    wl_keyboard_add_listener(keyboard_.get(), &keyboardListener, this);
  }
}

void WaylandSeat::press(std::uint32_t button, bool down) {
  if (button == BTN_LEFT) note(down ? Kind::pressed : Kind::released);
  if (button == BTN_RIGHT && !down) note(Kind::menuAsked);
}

void WaylandSeat::type(std::uint32_t key) {
  if (key == KEY_ENTER || key == KEY_KPENTER) note(Kind::returnPressed);
  if (key == KEY_COMPOSE || key == KEY_MENU || (key == KEY_F10 && isShifted_))
    note(Kind::menuKeyPressed);
}

void WaylandSeat::note(InputEvent::Kind kind) {
  events_.push_back({kind, place_, serial_, seat_.get()});
}

}  // namespace desktop
