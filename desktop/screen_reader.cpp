#include "desktop/screen_reader.hpp"

#include <dlfcn.h>

#include <cstring>

#include "desktop/complain.hpp"
#include "platform/processes/guarded.hpp"
#include "platform/processes/process.hpp"

namespace desktop {

namespace {

constexpr const char* busName = "org.a11y.Bus";
constexpr const char* busPath = "/org/a11y/bus";
constexpr const char* statusInterface = "org.a11y.Status";
constexpr const char* properties = "org.freedesktop.DBus.Properties";
constexpr int deadline = 5000;  // milliseconds

bool isForced() {
  const char* forced = g_getenv("ACCESSIBILITY_ENABLED");
  return forced != nullptr && std::strcmp(forced, "1") == 0;
}

/// Whether one of the properties is true.
bool anyEnabled(GVariant* dictionary) {
  for (const char* name : {"IsEnabled", "ScreenReaderEnabled"}) {
    gboolean enabled = FALSE;
    if (g_variant_lookup(dictionary, name, "b", &enabled) != FALSE && enabled != FALSE) return true;
  }
  return false;
}

}  // namespace

ScreenReader::ScreenReader(GDBusConnection* bus) : bus_(bus), cancellable_(g_cancellable_new()) {}

ScreenReader::~ScreenReader() {
  g_cancellable_cancel(cancellable_.get());
  stopWatching();
}

void ScreenReader::say(std::vector<std::string> phrases) {
  phrases_ = std::move(phrases);
  isHidden_ = false;
  said();
}

void ScreenReader::sayHidden() {
  isHidden_ = true;
  said();
}

void ScreenReader::said() {
  const bool isFirst = !std::exchange(hasSaid_, true);
  pass();
  // Once there is something to say, which is after the first picture.
  if (isFirst && isForced()) {
    listen();
  } else if (isFirst && bus_ != nullptr && nameWatch_ == 0) {
    nameWatch_ = g_bus_watch_name_on_connection(bus_, busName, G_BUS_NAME_WATCHER_FLAGS_NONE,
                                                appeared, vanished, this, nullptr);
  }
}

/// The bridge is a module of its own, since what it needs is half as large as this whole program.
void ScreenReader::loadBridge() {
  const auto file = platform::installedFile("velmora-screen-reader.so");
  void* module = file.empty() ? nullptr : dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr)
    return complain(file.empty() ? "the bridge to screen readers is not installed"
                                 : std::string("no bridge to screen readers: ") + dlerror());
  void* start = dlsym(module, "velmoraStartBridge");
  void* say = dlsym(module, "velmoraSay");
  void* sayHidden = dlsym(module, "velmoraSayHidden");
  if (start == nullptr || say == nullptr || sayHidden == nullptr)
    return complain("the bridge to screen readers is of another version");
  if (!reinterpret_cast<bool (*)()>(start)()) return;
  say_ = reinterpret_cast<decltype(say_)>(say);
  sayHiddenPhrase_ = reinterpret_cast<decltype(sayHiddenPhrase_)>(sayHidden);
}

void ScreenReader::listen() {
  if (say_ == nullptr) loadBridge();
  stopWatching();
  pass();
}

void ScreenReader::pass() const {
  if (say_ == nullptr) return;
  if (isHidden_) return sayHiddenPhrase_();
  std::vector<const char*> texts;
  for (const auto& phrase : phrases_) texts.push_back(phrase.c_str());
  say_(texts.data(), texts.size());
}

void ScreenReader::appeared(GDBusConnection* bus, const gchar*, const gchar* owner,
                            gpointer reader) {
  auto* self = static_cast<ScreenReader*>(reader);
  self->subscription_ = g_dbus_connection_signal_subscribe(
      bus, owner, properties, "PropertiesChanged", busPath, statusInterface,
      G_DBUS_SIGNAL_FLAGS_NONE, changed, self, nullptr);
  self->ask();
}

void ScreenReader::ask() {
  g_dbus_connection_call(bus_, busName, busPath, properties, "GetAll",
                         g_variant_new("(s)", statusInterface), G_VARIANT_TYPE("(a{sv})"),
                         G_DBUS_CALL_FLAGS_NO_AUTO_START, deadline, cancellable_.get(), asked,
                         this);
}

void ScreenReader::asked(GObject* bus, GAsyncResult* result, gpointer reader) {
  const platform::GValueTree reply(
      g_dbus_connection_call_finish(reinterpret_cast<GDBusConnection*>(bus), result, nullptr));
  if (!reply) return;  // when cancelled, `reader` may be gone
  const platform::GValueTree dictionary(g_variant_get_child_value(reply.get(), 0));
  if (anyEnabled(dictionary.get()))
    platform::guarded([&] { static_cast<ScreenReader*>(reader)->listen(); });
}

void ScreenReader::changed(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                           GVariant*, gpointer reader) {
  static_cast<ScreenReader*>(reader)->ask();
}

void ScreenReader::vanished(GDBusConnection*, const gchar*, gpointer reader) {
  auto* self = static_cast<ScreenReader*>(reader);
  if (self->subscription_ != 0)
    g_dbus_connection_signal_unsubscribe(self->bus_, self->subscription_);
  self->subscription_ = 0;
}

void ScreenReader::stopWatching() {
  if (subscription_ != 0) g_dbus_connection_signal_unsubscribe(bus_, subscription_);
  subscription_ = 0;
  if (nameWatch_ != 0) g_bus_unwatch_name(nameWatch_);
  nameWatch_ = 0;
}

}  // namespace desktop
