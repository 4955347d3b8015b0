#include "desktop/running_host.hpp"

#include <cstdlib>
#include <filesystem>
#include <memory>

#include "platform/foundation/glib.hpp"
#include "platform/processes/guarded.hpp"

namespace desktop {

namespace {

constexpr int deadline = 5000;  // milliseconds

using Answered = std::function<void(const std::optional<HostAnswer>&)>;

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

/// "host:1.0" names a screen of "host:1".
std::string withoutScreen(std::string display) {
  const auto colon = display.rfind(':');
  const auto point = colon == std::string::npos ? colon : display.find('.', colon);
  if (point != std::string::npos) display.erase(point);
  return display;
}

bool nobodyIsThere(const GError* error) {
  return g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER) != FALSE ||
         g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) != FALSE ||
         g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY) != FALSE;  // it just ended
}

std::optional<HostAnswer> answerOf(GVariant* reply, const GError* error) {
  if (reply == nullptr && nobodyIsThere(error)) return std::nullopt;
  if (reply == nullptr) return HostAnswer{1, "the running widget does not answer"};
  HostAnswer answer;
  const char* line = nullptr;
  g_variant_get(reply, "(i&s)", &answer.status, &line);
  answer.line = line;
  return answer;
}

void replied(GObject* bus, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Answered> answered(static_cast<Answered*>(data));
  GError* failure = nullptr;
  const platform::GValueTree reply(
      g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &failure));
  const platform::GFailure error(failure);
  if (g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE) return;
  platform::guarded([&] { (*answered)(answerOf(reply.get(), error.get())); });
}

}  // namespace

Displays ownDisplays() {
  namespace fs = std::filesystem;
  Displays displays{withoutScreen(variable("DISPLAY")), ""};
  // A socket is named by its file, which may stand in the user's runtime directory.
  if (const auto name = variable("WAYLAND_DISPLAY"); !name.empty())
    displays.wayland = (fs::path(variable("XDG_RUNTIME_DIR")) / name).lexically_normal();
  return displays;
}

bool isElsewhere(const Displays& caller, const Displays& host, const std::string& kind) {
  const bool isWayland = kind == "wayland";
  const auto& named = isWayland ? caller.wayland : caller.x11;
  const auto& other = isWayland ? caller.x11 : caller.wayland;
  const auto& own = isWayland ? host.wayland : host.x11;
  if (!named.empty()) return named != own;
  return !other.empty() && other != (isWayland ? host.x11 : host.wayland);
}

void callRunningHost(GDBusConnection* bus, const HostCall& call, GCancellable* cancellable,
                     Answered answered) {
  GVariantBuilder words;
  g_variant_builder_init(&words, G_VARIANT_TYPE_STRING_ARRAY);
  for (const auto& word : call.words) {
    const platform::GText text(g_utf8_make_valid(word.data(), static_cast<gssize>(word.size())));
    g_variant_builder_add(&words, "s", text.get());
  }
  g_dbus_connection_call(bus, hostBusName, hostObjectPath, hostInterface, hostCallMethod,
                         g_variant_new(hostCallType, &words, call.folder.c_str(),
                                       call.displays.x11.c_str(), call.displays.wayland.c_str()),
                         G_VARIANT_TYPE(hostAnswerType), G_DBUS_CALL_FLAGS_NO_AUTO_START, deadline,
                         cancellable, replied,
                         std::make_unique<Answered>(std::move(answered)).release());
}

}  // namespace desktop
