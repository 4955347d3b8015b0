#include <linux/input-event-codes.h>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>

#include <cstdint>
#include <cstring>
#include <iostream>
#include <map>
#include <sstream>
#include <string>

// A pointer and a keyboard that obey: reads lines of words like those of xdotool ("mousemove X Y
// mousedown 1 sleep 0.2 mouseup 1 click 3 key Down") and answers each line once the compositor has
// taken it. Arguments: the size of the screen in points. Speaks the virtual pointer and keyboard of
// sway and the fake input of KWin.

namespace {

const wl_interface* none[] = {nullptr, nullptr, nullptr, nullptr, nullptr};
extern const wl_interface pointerInterface;
extern const wl_interface keyboardInterface;
const wl_interface* makePointerTypes[] = {&wl_seat_interface, &pointerInterface};
const wl_interface* makeKeyboardTypes[] = {&wl_seat_interface, &keyboardInterface};

const wl_message pointerManagerRequests[] = {{"create_virtual_pointer", "?on", makePointerTypes}};
const wl_message pointerRequests[] = {{"motion", "uff", none},
                                      {"motion_absolute", "uuuuu", none},
                                      {"button", "uuu", none},
                                      {"axis", "uuf", none},
                                      {"frame", "", none}};
const wl_message keyboardManagerRequests[] = {{"create_virtual_keyboard", "on", makeKeyboardTypes}};
const wl_message keyboardRequests[] = {
    {"keymap", "uhu", none}, {"key", "uuu", none}, {"modifiers", "uuuu", none}};
const wl_message fakeRequests[] = {
    {"authenticate", "ss", none}, {"pointer_motion", "ff", none},
    {"button", "uu", none},       {"axis", "uf", none},
    {"touch_down", "uff", none},  {"touch_motion", "uff", none},
    {"touch_up", "u", none},      {"touch_cancel", "", none},
    {"touch_frame", "", none},    {"pointer_motion_absolute", "3ff", none},
    {"keyboard_key", "4uu", none}};
const wl_interface pointerInterface{"zwlr_virtual_pointer_v1", 1, 5, pointerRequests, 0, nullptr};
const wl_interface keyboardInterface{"zwp_virtual_keyboard_v1", 1, 3, keyboardRequests, 0, nullptr};
const wl_interface pointerManager{
    "zwlr_virtual_pointer_manager_v1", 1, 1, pointerManagerRequests, 0, nullptr};
const wl_interface keyboardManager{"zwp_virtual_keyboard_manager_v1", 1, 1,
                                   keyboardManagerRequests,           0, nullptr};
const wl_interface fakeInput{"org_kde_kwin_fake_input", 4, 11, fakeRequests, 0, nullptr};

struct Globals {
  std::map<std::string, wl_proxy*> bound;
};

template <class... Arguments>
void request(wl_proxy* proxy, std::uint32_t number, Arguments... arguments) {
  wl_proxy_marshal_flags(proxy, number, nullptr, wl_proxy_get_version(proxy), 0, arguments...);
}

class Input {
 public:
  Input(wl_display* display, std::uint32_t width, std::uint32_t height)
      : display_(display), width_(width), height_(height) {
    static const wl_registry_listener listener{
        [](void* data, wl_registry* registry, std::uint32_t number, const char* name,
           std::uint32_t) {
          for (const auto* known :
               {&wl_seat_interface, &pointerManager, &keyboardManager, &fakeInput}) {
            if (std::strcmp(name, known->name) == 0)
              static_cast<Globals*>(data)->bound[name] = static_cast<wl_proxy*>(
                  wl_registry_bind(registry, number, known, known == &fakeInput ? 4 : 1));
          }
        },
        [](void*, wl_registry*, std::uint32_t) {}};
    Globals globals;
    wl_registry_add_listener(wl_display_get_registry(display), &listener, &globals);
    wl_display_roundtrip(display);
    wl_proxy* seat = globals.bound[wl_seat_interface.name];
    fake_ = globals.bound[fakeInput.name];
    if (fake_ != nullptr) {
      request(fake_, 0, "velmora", "test");
      return;
    }
    pointer_ = wl_proxy_marshal_flags(globals.bound.at(pointerManager.name), 0, &pointerInterface,
                                      1, 0, seat, nullptr);
    keyboard_ = wl_proxy_marshal_flags(globals.bound.at(keyboardManager.name), 0,
                                       &keyboardInterface, 1, 0, seat, nullptr);
    sendKeymap();
  }

  void obey(std::istream& words) {
    static const std::map<std::string, std::uint32_t> keys{{"Return", KEY_ENTER},
                                                           {"Escape", KEY_ESC},
                                                           {"Down", KEY_DOWN},
                                                           {"Up", KEY_UP},
                                                           {"Menu", KEY_COMPOSE}};
    std::string word, name;
    int x = 0, y = 0, number = 0;
    double seconds = 0;
    while (words >> word) {
      if (word == "mousemove" && words >> x >> y) move(x, y);
      if (word == "mousedown" && words >> number) button(number, 1);
      if (word == "mouseup" && words >> number) button(number, 0);
      if (word == "click" && words >> number) button(number, 1), button(number, 0);
      if (word == "sleep" && words >> seconds) usleep(static_cast<useconds_t>(seconds * 1e6));
      if (word == "key" && words >> name) key(keys.at(name), 1), key(keys.at(name), 0);
    }
  }

 private:
  void sendKeymap() {
    const std::string map =
        R"map(xkb_keymap { xkb_keycodes { include "evdev+aliases(qwerty)" };
           xkb_types { include "complete" }; xkb_compat { include "complete" };
           xkb_symbols { include "pc+us+inet(evdev)" }; };)map";
    const int file = memfd_create("keymap", 0);
    const auto size = static_cast<std::uint32_t>(map.size() + 1);
    if (write(file, map.c_str(), size) != static_cast<ssize_t>(size)) std::exit(1);
    request(keyboard_, 0, 1U, file, size);
    wl_display_roundtrip(display_);
    close(file);
  }

  // A client must see what comes before it is sent more.
  void settle() {
    wl_display_roundtrip(display_);
    usleep(30'000);
  }

  void move(int x, int y) {
    if (fake_ != nullptr) {
      request(fake_, 9, wl_fixed_from_int(x), wl_fixed_from_int(y));
    } else {
      request(pointer_, 1, ++time_, static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y),
              width_, height_);
      request(pointer_, 4);
    }
    settle();
  }

  void button(int number, std::uint32_t state) {
    const std::uint32_t code = number == 3 ? BTN_RIGHT : BTN_LEFT;
    if (fake_ != nullptr) {
      request(fake_, 2, code, state);
    } else {
      request(pointer_, 2, ++time_, code, state);
      request(pointer_, 4);
    }
    settle();
  }

  void key(std::uint32_t code, std::uint32_t state) {
    if (fake_ != nullptr) {
      request(fake_, 10, code, state);
    } else {
      request(keyboard_, 1, ++time_, code, state);
    }
    settle();
  }

  wl_display* display_;
  std::uint32_t width_;
  std::uint32_t height_;
  std::uint32_t time_ = 1000;
  wl_proxy* fake_ = nullptr;
  wl_proxy* pointer_ = nullptr;
  wl_proxy* keyboard_ = nullptr;
};

}  // namespace

int main(int count, char** arguments) {
  wl_display* display = wl_display_connect(nullptr);
  if (display == nullptr || count != 3) return 1;
  Input input(display, static_cast<std::uint32_t>(std::stoi(arguments[1])),
              static_cast<std::uint32_t>(std::stoi(arguments[2])));
  std::string line;
  while (std::getline(std::cin, line)) {
    std::istringstream words(line);
    input.obey(words);
    std::cout << "done" << std::endl;
  }
}
