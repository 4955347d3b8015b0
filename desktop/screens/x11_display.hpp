#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/raii.hpp"

namespace desktop {

using X11Connection = platform::Owned<xcb_connection_t, xcb_disconnect>;

/// What the X server sends; the C library's memory.
template <class Type>
using X11Owned = platform::Owned<Type, std::free>;

/// A connection to an X server, its screen, and the names it is spoken to in.
class X11Display {
 public:
  /// Throws std::runtime_error when there is none.
  X11Display();

  [[nodiscard]] xcb_connection_t* connection() const { return connection_.get(); }
  [[nodiscard]] xcb_window_t root() const { return screen_->root; }
  [[nodiscard]] const xcb_screen_t& screen() const { return *screen_; }
  [[nodiscard]] int screenNumber() const { return number_; }
  /// The atom of that name.
  [[nodiscard]] xcb_atom_t atom(std::string_view name) const;
  /// The owner of a selection such as "_NET_WM_CM_S0"; 0 without one.
  [[nodiscard]] xcb_window_t owner(std::string_view selection) const;
  /// A property's bytes, up to 1 MiB; empty when there is none.
  [[nodiscard]] std::vector<std::uint8_t> bytes(xcb_window_t window, std::string_view name) const;
  /// A property's 32-bit values.
  [[nodiscard]] std::vector<std::uint32_t> numbers(xcb_window_t window,
                                                   std::string_view name) const;
  void setNumbers(xcb_window_t window, std::string_view name, xcb_atom_t type,
                  const std::vector<std::uint32_t>& values) const;
  void setText(xcb_window_t window, std::string_view name, std::string_view text) const;
  /// The name of a selection of this screen: "_NET_WM_CM_S" gives "_NET_WM_CM_S0".
  [[nodiscard]] std::string ofScreen(std::string_view name) const;

 private:
  X11Connection connection_;
  const xcb_screen_t* screen_ = nullptr;
  int number_ = 0;
  mutable std::map<std::string, xcb_atom_t, std::less<>> atoms_;
};

}  // namespace desktop
