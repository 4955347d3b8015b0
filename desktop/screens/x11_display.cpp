#include "desktop/screens/x11_display.hpp"

#include <cstring>
#include <stdexcept>

namespace desktop {

namespace {

constexpr std::uint32_t largestProperty = 1U << 18U;  // in units of four bytes

const xcb_screen_t* screenOfNumber(xcb_connection_t* connection, int number) {
  auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (; screens.rem > 1 && number > 0; --number) xcb_screen_next(&screens);
  return screens.data;
}

X11Hints hintsOf(xcb_connection_t* connection) {
  auto hints = std::make_unique<xcb_ewmh_connection_t>();
  // When it fails, it has released what it kept.
  if (xcb_ewmh_init_atoms_replies(hints.get(), xcb_ewmh_init_atoms(connection, hints.get()),
                                  nullptr) == 0)
    throw std::runtime_error("the X server cannot be spoken to");
  return X11Hints(hints.release());
}

}  // namespace

void releaseHints(xcb_ewmh_connection_t* hints) {
  xcb_ewmh_connection_wipe(hints);
  delete hints;
}

X11Display::X11Display() : connection_(xcb_connect(nullptr, &number_)) {
  if (xcb_connection_has_error(connection_.get()) != 0)
    throw std::runtime_error("the X server cannot be reached");
  screen_ = screenOfNumber(connection_.get(), number_);
  hints_ = hintsOf(connection_.get());
}

xcb_atom_t X11Display::atom(std::string_view name) const {
  if (const auto known = atoms_.find(name); known != atoms_.end()) return known->second;
  const auto question =
      xcb_intern_atom(connection(), 0, static_cast<std::uint16_t>(name.size()), name.data());
  const X11Owned<xcb_intern_atom_reply_t> reply(
      xcb_intern_atom_reply(connection(), question, nullptr));
  const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
  atoms_.emplace(name, atom);
  return atom;
}

xcb_window_t X11Display::owner(xcb_atom_t selection) const {
  const auto question = xcb_get_selection_owner(connection(), selection);
  const X11Owned<xcb_get_selection_owner_reply_t> reply(
      xcb_get_selection_owner_reply(connection(), question, nullptr));
  return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

std::vector<std::uint8_t> X11Display::bytes(xcb_window_t window, std::string_view name) const {
  const auto question =
      xcb_get_property(connection(), 0, window, atom(name), XCB_ATOM_ANY, 0, largestProperty);
  const X11Owned<xcb_get_property_reply_t> reply(
      xcb_get_property_reply(connection(), question, nullptr));
  if (!reply) return {};
  const auto* data = static_cast<const std::uint8_t*>(xcb_get_property_value(reply.get()));
  return {data, data + xcb_get_property_value_length(reply.get())};
}

std::vector<std::uint32_t> X11Display::numbers(xcb_window_t window, std::string_view name) const {
  const auto data = bytes(window, name);
  std::vector<std::uint32_t> values(data.size() / sizeof(std::uint32_t));
  if (!values.empty()) std::memcpy(values.data(), data.data(), values.size() * sizeof values[0]);
  return values;
}

xcb_atom_t X11Display::settingsSelection() const {
  return atom("_XSETTINGS_S" + std::to_string(number_));
}

}  // namespace desktop
