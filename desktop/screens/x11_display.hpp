#pragma once

#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

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

/// The names of the Extended Window Manager Hints, and what their library keeps for itself.
void releaseHints(xcb_ewmh_connection_t* hints);
using X11Hints = platform::Owned<xcb_ewmh_connection_t, releaseHints>;

/// A connection to an X server, its screen, and the names it is spoken to in.
class X11Display {
 public:
  /// Throws std::runtime_error when there is none.
  X11Display();

  [[nodiscard]] xcb_connection_t* connection() const { return connection_.get(); }
  [[nodiscard]] xcb_window_t root() const { return screen_->root; }
  [[nodiscard]] const xcb_screen_t& screen() const { return *screen_; }
  [[nodiscard]] int screenNumber() const { return number_; }
  [[nodiscard]] xcb_ewmh_connection_t* hints() const { return hints_.get(); }
  /// The atom of that name.
  [[nodiscard]] xcb_atom_t atom(std::string_view name) const;
  /// The owner of a selection; 0 without one.
  [[nodiscard]] xcb_window_t owner(xcb_atom_t selection) const;
  /// A property's bytes, up to 1 MiB; empty when there is none.
  [[nodiscard]] std::vector<std::uint8_t> bytes(xcb_window_t window, std::string_view name) const;
  /// A property's 32-bit values.
  [[nodiscard]] std::vector<std::uint32_t> numbers(xcb_window_t window,
                                                   std::string_view name) const;
  /// The selection that a compositor of this screen owns.
  [[nodiscard]] xcb_atom_t compositorSelection() const { return hints_->_NET_WM_CM_Sn[number_]; }
  /// The selection that a settings manager of this screen owns.
  [[nodiscard]] xcb_atom_t settingsSelection() const;

 private:
  X11Connection connection_;
  const xcb_screen_t* screen_ = nullptr;
  X11Hints hints_;
  int number_ = 0;
  mutable std::map<std::string, xcb_atom_t, std::less<>> atoms_;
};

}  // namespace desktop
