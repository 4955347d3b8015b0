#include "desktop/screens/layer_shell.hpp"

namespace {

const wl_interface* noTypes[] = {nullptr, nullptr, nullptr, nullptr};
const wl_interface* getSurfaceTypes[] = {&zwlr_layer_surface_v1_interface, &wl_surface_interface,
                                         &wl_output_interface, nullptr, nullptr};

// The place of each request in these lists is its number in the protocol. A signature has the
// version since which there is a request, unless it is 1, and a letter for each argument.
const wl_message shellRequests[] = {{"get_layer_surface", "no?ous", getSurfaceTypes},
                                    {"destroy", "3", noTypes}};
enum : std::uint32_t { requestGetLayerSurface, requestDestroyShell };

const wl_message surfaceRequests[] = {{"set_size", "uu", noTypes},
                                      {"set_anchor", "u", noTypes},
                                      {"set_exclusive_zone", "i", noTypes},
                                      {"set_margin", "iiii", noTypes},
                                      {"set_keyboard_interactivity", "u", noTypes},
                                      {"get_popup", "o", noTypes},
                                      {"ack_configure", "u", noTypes},
                                      {"destroy", "", noTypes},
                                      {"set_layer", "2u", noTypes}};
enum : std::uint32_t {
  requestSetSize,
  requestSetAnchor,
  requestSetExclusiveZone,
  requestSetMargin,
  requestSetKeyboard,
  requestGetPopup,
  requestAcknowledge,
  requestDestroySurface
};

const wl_message surfaceEvents[] = {{"configure", "uuu", noTypes}, {"closed", "", noTypes}};

template <class Object>
wl_proxy* proxy(Object* object) {
  return reinterpret_cast<wl_proxy*>(object);
}

template <class Object, class... Arguments>
void request(Object* object, std::uint32_t number, Arguments... arguments) {
  wl_proxy_marshal_flags(proxy(object), number, nullptr, wl_proxy_get_version(proxy(object)), 0,
                         arguments...);
}

}  // namespace

const wl_interface zwlr_layer_shell_v1_interface = {
    "zwlr_layer_shell_v1", desktop::layer_shell::newestVersion, 2, shellRequests, 0, nullptr};
const wl_interface zwlr_layer_surface_v1_interface = {"zwlr_layer_surface_v1",
                                                      desktop::layer_shell::newestVersion,
                                                      9,
                                                      surfaceRequests,
                                                      2,
                                                      surfaceEvents};

namespace desktop::layer_shell {

void destroyShell(zwlr_layer_shell_v1* shell) {
  constexpr std::uint32_t sinceVersion = 3;
  if (wl_proxy_get_version(proxy(shell)) < sinceVersion) return wl_proxy_destroy(proxy(shell));
  wl_proxy_marshal_flags(proxy(shell), requestDestroyShell, nullptr,
                         wl_proxy_get_version(proxy(shell)), WL_MARSHAL_FLAG_DESTROY);
}

void destroySurface(zwlr_layer_surface_v1* surface) {
  wl_proxy_marshal_flags(proxy(surface), requestDestroySurface, nullptr,
                         wl_proxy_get_version(proxy(surface)), WL_MARSHAL_FLAG_DESTROY);
}

zwlr_layer_surface_v1* getSurface(zwlr_layer_shell_v1* shell, wl_surface* surface,
                                  wl_output* output, std::uint32_t layer, const char* name) {
  auto* made = wl_proxy_marshal_flags(
      proxy(shell), requestGetLayerSurface, &zwlr_layer_surface_v1_interface,
      wl_proxy_get_version(proxy(shell)), 0, nullptr, surface, output, layer, name);
  return reinterpret_cast<zwlr_layer_surface_v1*>(made);
}

void listen(zwlr_layer_surface_v1* surface, const SurfaceListener* listener, void* data) {
  using Functions = void (**)(void);
  wl_proxy_add_listener(proxy(surface),
                        reinterpret_cast<Functions>(const_cast<SurfaceListener*>(listener)), data);
}

void setSize(zwlr_layer_surface_v1* surface, std::uint32_t width, std::uint32_t height) {
  request(surface, requestSetSize, width, height);
}

void setAnchor(zwlr_layer_surface_v1* surface, std::uint32_t anchors) {
  request(surface, requestSetAnchor, anchors);
}

void setExclusiveZone(zwlr_layer_surface_v1* surface, std::int32_t zone) {
  request(surface, requestSetExclusiveZone, zone);
}

void setMargin(zwlr_layer_surface_v1* surface, int top, int right, int bottom, int left) {
  request(surface, requestSetMargin, top, right, bottom, left);
}

void setKeyboard(zwlr_layer_surface_v1* surface, std::uint32_t interactivity) {
  request(surface, requestSetKeyboard, interactivity);
}

void acknowledge(zwlr_layer_surface_v1* surface, std::uint32_t serial) {
  request(surface, requestAcknowledge, serial);
}

}  // namespace desktop::layer_shell
