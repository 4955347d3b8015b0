#include "desktop/screens/x11_window.hpp"

#include <limits.h>
#include <unistd.h>
#include <xcb/shape.h>
#include <xcb/xcb_icccm.h>

#include <array>

namespace desktop {

namespace {

constexpr std::uint32_t everyDesktop = 0xffffffff;

std::string hostName() {
  std::array<char, HOST_NAME_MAX + 1> name{};
  return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

std::uint32_t length(const std::string& text) { return static_cast<std::uint32_t>(text.size()); }

}  // namespace

X11Window::X11Window(std::shared_ptr<const X11Display> display, const X11Visual& visual,
                     Standing standing)
    : display_(std::move(display)), window_(xcb_generate_id(display_->connection())) {
  create(visual);
  setStanding(standing);
  setHints();
  setNames();
}

X11Window::~X11Window() { xcb_destroy_window(display_->connection(), window_); }

void X11Window::create(const X11Visual& visual) {
  const std::array<std::uint32_t, 4> values{
      0, XCB_GRAVITY_NORTH_WEST,
      XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_BUTTON_1_MOTION |
          XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
          XCB_EVENT_MASK_PROPERTY_CHANGE,
      visual.colormap};
  xcb_create_window(display_->connection(), visual.depth, window_, display_->root(), 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, visual.type->visual_id,
                    XCB_CW_BORDER_PIXEL | XCB_CW_BIT_GRAVITY | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
                    values.data());
}

void X11Window::setHints() const {
  auto* connection = display_->connection();
  auto* hints = display_->hints();
  std::array states{hints->_NET_WM_STATE_BELOW, hints->_NET_WM_STATE_SKIP_TASKBAR,
                    hints->_NET_WM_STATE_SKIP_PAGER, hints->_NET_WM_STATE_STICKY};
  xcb_ewmh_set_wm_state(hints, window_, states.size(), states.data());
  std::array protocols{display_->atom("WM_DELETE_WINDOW"), hints->_NET_WM_PING};
  xcb_icccm_set_wm_protocols(connection, hints->WM_PROTOCOLS, window_, protocols.size(),
                             protocols.data());
  xcb_ewmh_set_wm_desktop(hints, window_, everyDesktop);
  xcb_ewmh_set_wm_user_time(hints, window_, 0);  // no focus when mapped
  xcb_ewmh_set_wm_pid(hints, window_, static_cast<std::uint32_t>(getpid()));
  // Motif's hints, for which there is no library: decorations are told, and there are none.
  const std::array<std::uint32_t, 5> undecorated{2, 0, 0, 0, 0};
  const auto motif = display_->atom("_MOTIF_WM_HINTS");
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window_, motif, motif, 32,
                      undecorated.size(), undecorated.data());
}

/// Never the type of the desktop's own window, which covers all of its kind when it is clicked.
void X11Window::setStanding(Standing standing) {
  auto* hints = display_->hints();
  xcb_icccm_wm_hints_t keyboardAndGroup{};
  xcb_icccm_wm_hints_set_input(&keyboardAndGroup, 1);
  auto* type = &hints->_NET_WM_WINDOW_TYPE_DOCK;
  if (standing == Standing::groupmate) {
    mate_ = std::make_unique<X11DesktopMate>(display_);
    xcb_icccm_wm_hints_set_window_group(&keyboardAndGroup, mate_->group());
    type = &hints->_NET_WM_WINDOW_TYPE_UTILITY;
  }
  xcb_ewmh_set_wm_window_type(hints, window_, 1, type);
  xcb_icccm_set_wm_hints(display_->connection(), window_, &keyboardAndGroup);
}

void X11Window::setNames() const {
  const std::string title = "Velmora";
  const std::string kind("velmora-desktop\0Velmora-desktop\0", 32);
  const auto host = hostName();
  auto* connection = display_->connection();
  xcb_ewmh_set_wm_name(display_->hints(), window_, length(title), title.data());
  xcb_icccm_set_wm_name(connection, window_, XCB_ATOM_STRING, 8, length(title), title.data());
  xcb_icccm_set_wm_class(connection, window_, length(kind), kind.data());
  xcb_icccm_set_wm_client_machine(connection, window_, XCB_ATOM_STRING, 8, length(host),
                                  host.data());
}

/// The user does not resize it, and the place is the window's own.
void X11Window::fixSize() const {
  xcb_size_hints_t hints{};
  hints.flags = XCB_ICCCM_SIZE_HINT_P_POSITION;
  xcb_icccm_size_hints_set_min_size(&hints, size_.width, size_.height);
  xcb_icccm_size_hints_set_max_size(&hints, size_.width, size_.height);
  xcb_icccm_size_hints_set_win_gravity(&hints, XCB_GRAVITY_STATIC);
  xcb_icccm_set_wm_normal_hints(display_->connection(), window_, &hints);
}

void X11Window::show(const X11Picture& picture, Point position) {
  auto* connection = display_->connection();
  const auto pixmap = picture.pixmap();
  size_ = picture.size();
  fixSize();
  xcb_change_window_attributes(connection, window_, XCB_CW_BACK_PIXMAP, &pixmap);
  moveTo(position);
  xcb_clear_area(connection, 0, window_, 0, 0, 0, 0);
}

void X11Window::map() const { xcb_map_window(display_->connection(), window_); }

void X11Window::cut(const X11Picture& picture) const {
  xcb_shape_rectangles(display_->connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                       XCB_CLIP_ORDERING_YX_BANDED, window_, 0, 0,
                       static_cast<std::uint32_t>(picture.shape().size()), picture.shape().data());
}

void X11Window::uncut() const {
  xcb_shape_mask(display_->connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, window_, 0, 0,
                 XCB_NONE);
}

void X11Window::moveTo(Point position) const {
  const std::array<std::int32_t, 4> values{position.x, position.y, size_.width, size_.height};
  xcb_configure_window(display_->connection(), window_,
                       XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                           XCB_CONFIG_WINDOW_HEIGHT,
                       values.data());
}

Point X11Window::position() const {
  auto* connection = display_->connection();
  const X11Owned<xcb_translate_coordinates_reply_t> reply(xcb_translate_coordinates_reply(
      connection, xcb_translate_coordinates(connection, window_, display_->root(), 0, 0), nullptr));
  return reply ? Point{reply->dst_x, reply->dst_y} : Point{};
}

bool X11Window::isShown() const {
  auto* connection = display_->connection();
  const X11Owned<xcb_get_window_attributes_reply_t> reply(xcb_get_window_attributes_reply(
      connection, xcb_get_window_attributes(connection, window_), nullptr));
  if (!reply || reply->map_state == XCB_MAP_STATE_UNMAPPED) return false;
  const auto state = display_->numbers(window_, "WM_STATE");
  return state.empty() || state[0] != XCB_ICCCM_WM_STATE_ICONIC;
}

void X11Window::takeFocus(xcb_timestamp_t time) const {
  xcb_ewmh_request_change_active_window(display_->hints(), display_->screenNumber(), window_,
                                        XCB_EWMH_CLIENT_SOURCE_TYPE_NORMAL, time, XCB_WINDOW_NONE);
}

}  // namespace desktop
