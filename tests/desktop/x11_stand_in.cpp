// What other programs of an X11 desktop do, one call each:
//   desktop          a desktop program's window, green, as large as the screen, until it is ended
//   window X Y W H   a plain window, red, until it is ended
//   show-desktop N   asks the window manager for "show desktop", 1 or 0
#include <xcb/xcb_ewmh.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string_view>
#include <vector>

namespace {

struct Stand {
  xcb_connection_t* connection;
  xcb_screen_t* screen;
  xcb_ewmh_connection_t hints;
};

void showWindow(Stand& stand, const std::vector<int>& area, std::uint32_t color, xcb_atom_t type) {
  const auto window = xcb_generate_id(stand.connection);
  const auto x = static_cast<std::int16_t>(area[0]), y = static_cast<std::int16_t>(area[1]);
  const auto width = static_cast<std::uint16_t>(area[2]);
  const auto height = static_cast<std::uint16_t>(area[3]);
  xcb_create_window(stand.connection, XCB_COPY_FROM_PARENT, window, stand.screen->root, x, y, width,
                    height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                    XCB_CW_BACK_PIXEL, &color);
  xcb_ewmh_set_wm_window_type(&stand.hints, window, 1, &type);
  xcb_map_window(stand.connection, window);
  const std::array<std::int32_t, 2> place{x, y};
  xcb_configure_window(stand.connection, window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                       place.data());
  xcb_flush(stand.connection);
  while (auto* event = xcb_wait_for_event(stand.connection)) std::free(event);
}

}  // namespace

int main(int count, char** arguments) {
  Stand stand{xcb_connect(nullptr, nullptr), nullptr, {}};
  if (count < 2 || xcb_connection_has_error(stand.connection) != 0) return 1;
  stand.screen = xcb_setup_roots_iterator(xcb_get_setup(stand.connection)).data;
  auto* asked = xcb_ewmh_init_atoms(stand.connection, &stand.hints);
  if (xcb_ewmh_init_atoms_replies(&stand.hints, asked, nullptr) == 0) return 1;
  std::vector<int> numbers;
  std::transform(arguments + 2, arguments + count, std::back_inserter(numbers), std::atoi);
  const std::string_view deed = arguments[1];
  if (deed == "desktop") {
    showWindow(stand, {0, 0, stand.screen->width_in_pixels, stand.screen->height_in_pixels},
               0x306030, stand.hints._NET_WM_WINDOW_TYPE_DESKTOP);
  } else if (deed == "window" && numbers.size() == 4) {
    showWindow(stand, numbers, 0xc03030, stand.hints._NET_WM_WINDOW_TYPE_NORMAL);
  } else if (deed == "show-desktop" && numbers.size() == 1) {
    // The library's own request names no window, which most window managers then do not take.
    const auto wanted = static_cast<std::uint32_t>(numbers[0]);
    xcb_ewmh_send_client_message(stand.connection, stand.screen->root, stand.screen->root,
                                 stand.hints._NET_SHOWING_DESKTOP, 1, &wanted);
    // What a program that ends at once has sent may be lost: wait until the server has read it.
    std::free(xcb_get_input_focus_reply(stand.connection, xcb_get_input_focus(stand.connection),
                                        nullptr));
  } else {
    return 1;
  }
  xcb_ewmh_connection_wipe(&stand.hints);
  xcb_disconnect(stand.connection);
}
