#include "desktop/screens/x11_standing.hpp"

#include <xcb/xcb_icccm.h>

#include <array>

namespace desktop {

Standing wantedStanding(const X11Display& display) {
  const auto manager = display.numbers(display.root(), "_NET_SUPPORTING_WM_CHECK");
  if (manager.empty()) return Standing::dock;
  const auto name = display.bytes(manager[0], "_NET_WM_NAME");
  return std::string(name.begin(), name.end()) == "KWin" ? Standing::groupmate : Standing::dock;
}

X11DesktopMate::X11DesktopMate(std::shared_ptr<const X11Display> display)
    : display_(std::move(display)), window_(xcb_generate_id(display_->connection())) {
  auto* connection = display_->connection();
  auto* hints = display_->hints();
  constexpr std::int16_t outOfSight = -10;
  xcb_create_window(connection, XCB_COPY_FROM_PARENT, window_, display_->root(), outOfSight,
                    outOfSight, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0,
                    nullptr);
  xcb_ewmh_set_wm_window_type(hints, window_, 1, &hints->_NET_WM_WINDOW_TYPE_DESKTOP);
  std::array states{hints->_NET_WM_STATE_SKIP_TASKBAR, hints->_NET_WM_STATE_SKIP_PAGER};
  xcb_ewmh_set_wm_state(hints, window_, states.size(), states.data());
  xcb_icccm_wm_hints_t keyboard{};
  xcb_icccm_wm_hints_set_input(&keyboard, 0);
  xcb_icccm_wm_hints_set_window_group(&keyboard, window_);
  xcb_icccm_set_wm_hints(connection, window_, &keyboard);
  xcb_map_window(connection, window_);
}

X11DesktopMate::~X11DesktopMate() { xcb_destroy_window(display_->connection(), window_); }

}  // namespace desktop
