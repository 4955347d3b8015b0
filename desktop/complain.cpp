#include "desktop/complain.hpp"

#include "platform/foundation/glib.hpp"

namespace desktop {

namespace {

bool steers(gunichar character) {
  switch (g_unichar_type(character)) {
    case G_UNICODE_CONTROL:
    case G_UNICODE_FORMAT:
    case G_UNICODE_LINE_SEPARATOR:
    case G_UNICODE_PARAGRAPH_SEPARATOR:
      return true;
    default:
      return false;
  }
}

}  // namespace

std::string terminalLine(const std::string& text) {
  const platform::GText valid(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
  std::string line;
  for (const char *at = valid.get(), *next = at; *at != '\0'; at = next) {
    next = g_utf8_next_char(at);
    line += steers(g_utf8_get_char(at)) ? " " : std::string(at, next);
  }
  return line;
}

void complain(const std::string& message) {
  g_printerr("velmora-desktop: %s\n", terminalLine(message).c_str());
}

}  // namespace desktop
