#include "desktop/call_service.hpp"

#include "platform/foundation/glib.hpp"
#include "platform/processes/guarded.hpp"

namespace desktop {

namespace {

constexpr const char* description =
    "<node><interface name='com.brenvik.velmora.Desktop'><method name='Call'>"
    "<arg name='words' type='as' direction='in'/><arg name='folder' type='s' direction='in'/>"
    "<arg name='x11Display' type='s' direction='in'/>"
    "<arg name='waylandDisplay' type='s' direction='in'/>"
    "<arg name='status' type='i' direction='out'/><arg name='line' type='s' direction='out'/>"
    "</method></interface></node>";

HostCall callFrom(GVariant* arguments) {
  HostCall call;
  platform::GWords words;
  char** list = nullptr;
  const char* folder = nullptr;
  const char* x11 = nullptr;
  const char* wayland = nullptr;
  g_variant_get(arguments, "(^as&s&s&s)", &list, &folder, &x11, &wayland);
  words.reset(list);
  for (char** word = list; *word != nullptr; ++word) call.words.emplace_back(*word);
  call.folder = folder;
  call.displays = {x11, wayland};
  return call;
}

}  // namespace

CallService::CallService(GDBusConnection* bus, Handler handler)
    : bus_(bus), handler_(std::move(handler)) {
  static const GDBusInterfaceVTable table{called, nullptr, nullptr, {}};
  GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(description, nullptr);
  registration_ = g_dbus_connection_register_object(bus_, hostObjectPath, node->interfaces[0],
                                                    &table, this, nullptr, nullptr);
  g_dbus_node_info_unref(node);
}

CallService::~CallService() {
  if (registration_ != 0) g_dbus_connection_unregister_object(bus_, registration_);
}

void CallService::called(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                         GVariant* arguments, GDBusMethodInvocation* invocation, gpointer service) {
  HostAnswer answer{1, "the call could not be carried out"};
  platform::guarded(
      [&] { answer = static_cast<CallService*>(service)->handler_(callFrom(arguments)); });
  g_dbus_method_invocation_return_value(
      invocation, g_variant_new(hostAnswerType, answer.status, answer.line.c_str()));
}

}  // namespace desktop
