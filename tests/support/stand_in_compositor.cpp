#include "tests/support/stand_in_compositor.hpp"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <stdexcept>

#include "desktop/screens/wayland_handles.hpp"

namespace tests {

namespace {

constexpr unsigned allAnchors = 15;

const std::map<std::string, const wl_interface*>& offered() {
  static const std::map<std::string, const wl_interface*> interfaces = [] {
    std::map<std::string, const wl_interface*> byName;
    for (const auto* interface :
         {&wl_compositor_interface, &wl_shm_interface, &wl_output_interface, &wl_seat_interface,
          &wp_viewporter_interface, &wp_fractional_scale_manager_v1_interface,
          &xdg_activation_v1_interface, &zxdg_output_manager_v1_interface,
          &zwlr_layer_shell_v1_interface})
      byName[interface->name] = interface;
    return byName;
  }();
  return interfaces;
}

/// What belongs to each object.
struct Made {
  StandInCompositor* compositor;
  const wl_interface* kind;
};

Made& made(wl_resource* object) { return *static_cast<Made*>(wl_resource_get_user_data(object)); }

/// The letters of a request's signature, one for each argument.
std::string letters(const wl_message& message) {
  std::string kept;
  for (const char* letter = message.signature; *letter != 0; ++letter) {
    if (std::isalpha(static_cast<unsigned char>(*letter)) != 0) kept += *letter;
  }
  return kept;
}

wl_resource* objectOf(const wl_argument& argument) {
  return reinterpret_cast<wl_resource*>(argument.o);
}

}  // namespace

StandInCompositor::StandInCompositor(const std::map<std::string, int>& globals)
    : display_(wl_display_create()) {
  for (const auto& [name, version] : globals) offer(name, version);
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
    throw std::runtime_error("no socket");
  wl_client_create(display_, ends[0]);
  setenv("WAYLAND_SOCKET", std::to_string(ends[1]).c_str(), 1);
  thread_ = std::thread([this] { serve(); });
}

StandInCompositor::~StandInCompositor() {
  isOver_ = true;
  thread_.join();
  wl_display_destroy_clients(display_);
  wl_display_destroy(display_);
}

void StandInCompositor::serve() {
  constexpr int tick = 20;  // milliseconds
  auto* loop = wl_display_get_event_loop(display_);
  pollfd descriptor{wl_event_loop_get_fd(loop), POLLIN, 0};
  while (!isOver_) {
    poll(&descriptor, 1, tick);
    run([&] { wl_event_loop_dispatch(loop, 0); });
  }
}

void StandInCompositor::run(const std::function<void()>& work) {
  const std::scoped_lock lock(mutex_);
  work();
  wl_display_flush_clients(display_);
}

void StandInCompositor::offer(const std::string& global, int version) {
  const auto kind = std::make_shared<Made>(Made{this, offered().at(global)});
  kinds_.push_back(kind);
  globals_[global] = wl_global_create(display_, kind->kind, version, kind.get(), bind);
}

void StandInCompositor::withdraw(const std::string& global) {
  wl_global_destroy(globals_.at(global));
}

void StandInCompositor::bind(wl_client* client, void* global, std::uint32_t version,
                             std::uint32_t id) {
  const auto& [self, kind] = *static_cast<Made*>(global);
  self->greet(self->make(client, kind, static_cast<int>(version), id));
}

void StandInCompositor::greet(wl_resource* global) {
  const std::string kind = made(global).kind->name;
  if (kind == "wl_output") tellOutput();
  if (kind == "wl_seat") send(global, "capabilities", 3U);
}

void StandInCompositor::tellOutput() {
  auto* output = latest.at("wl_output");
  const auto version = wl_resource_get_version(output);
  send(output, "geometry", 0, 0, 300, 200, 0, "", "", 0);
  send(output, "mode", 1U, mode.width, mode.height, 60000);
  if (version >= 2) send(output, "scale", scale);
  if (latest.contains("zxdg_output_v1")) {
    tell("zxdg_output_v1", "logical_position", 0, 0);
    tell("zxdg_output_v1", "logical_size", mode.width / scale, mode.height / scale);
  }
  if (version >= 4) send(output, "name", "ONE-1");
  if (version >= 2) send(output, "done");
}

wl_resource* StandInCompositor::make(wl_client* client, const wl_interface* kind, int version,
                                     std::uint32_t id) {
  auto* object = wl_resource_create(client, kind, version, id);
  wl_resource_set_dispatcher(object, dispatch, nullptr, new Made{this, kind}, forget);
  latest[kind->name] = object;
  return object;
}

/// An object has gone, by request or with its client.
void StandInCompositor::forget(wl_resource* object) {
  auto& self = *made(object).compositor;
  for (auto& surface : self.surfaces) {
    if (surface.layer == object) surface.layer = nullptr;
    std::erase(surface.frames, object);
  }
  self.surfaces.remove_if([=](const auto& surface) { return surface.surface == object; });
  self.buffers_.erase(object);
  std::erase_if(self.latest, [=](const auto& known) { return known.second == object; });
  delete &made(object);
}

std::uint32_t StandInCompositor::numberOf(wl_resource* object, const std::string& event) {
  const auto* kind = made(object).kind;
  for (int i = 0; i < kind->event_count; ++i) {
    if (event == kind->events[i].name) return static_cast<std::uint32_t>(i);
  }
  throw std::runtime_error("no such event: " + event);
}

int StandInCompositor::dispatch(const void*, void* target, std::uint32_t, const wl_message* message,
                                wl_argument* arguments) {
  auto* object = static_cast<wl_resource*>(target);
  const auto& [self, kind] = made(object);
  const auto types = letters(*message);
  for (std::size_t i = 0; i < types.size(); ++i) {
    if (types[i] == 'h') close(arguments[i].h);
    if (types[i] == 'n')
      self->make(wl_resource_get_client(object), message->types[i], wl_resource_get_version(object),
                 arguments[i].n);
  }
  const std::string name = message->name;
  ++self->requests[std::string(kind->name) + "." + name];
  self->take(object, kind->name, name, arguments);
  const auto shows = [=](const auto& surface) { return surface.shown == object; };
  if (name == "destroy" && self->find(shows) != nullptr)
    self->wrongs.emplace_back("a buffer went while it was shown");
  if (name == "destroy" || name == "release") wl_resource_destroy(object);
  return 0;
}

void StandInCompositor::take(wl_resource* object, const std::string& kind, const std::string& name,
                             Arguments arguments) {
  if (name == "create_surface") surfaces.push_back({latest.at("wl_surface")});
  if (name == "create_buffer") buffers_[latest.at("wl_buffer")] = {arguments[2].i, arguments[3].i};
  if (name == "get_xdg_output") tellOutput();
  if (kind == "xdg_activation_token_v1" && name == "commit") send(object, "done", "token");
  if (name == "get_layer_surface")
    find([&](const auto& one) { return one.surface == objectOf(arguments[1]); })->layer =
        latest.at("zwlr_layer_surface_v1");
  if (auto* surface = find([=](const auto& one) { return one.surface == object; }))
    takeOfSurface(*surface, name, arguments);
  if (auto* surface = find([=](const auto& one) { return one.layer == object; }))
    takeOfLayer(*surface, name, arguments);
}

void StandInCompositor::takeOfSurface(StandInSurface& surface, const std::string& name,
                                      Arguments arguments) {
  if (name == "attach") surface.attached = objectOf(arguments[0]);
  if (name == "set_buffer_scale") surface.bufferScale = arguments[0].i;
  if (name == "set_input_region") surface.takesInput = false;
  if (name == "frame") surface.frames.push_back(latest.at("wl_callback"));
  if (name == "commit") commit(surface);
  if (name == "destroy") surface.shown = nullptr;
}

void StandInCompositor::takeOfLayer(StandInSurface& surface, const std::string& name,
                                    Arguments arguments) {
  if (name == "set_anchor") surface.anchors = arguments[0].u;
  if (name == "set_size")
    surface.size = {static_cast<int>(arguments[0].u), static_cast<int>(arguments[1].u)};
  if (name == "set_margin")
    surface.margins = {arguments[0].i, arguments[1].i, arguments[2].i, arguments[3].i};
}

void StandInCompositor::commit(StandInSurface& surface) {
  surface.shown = surface.attached;
  const auto size = sizeOf(surface.shown);
  if (size.width % surface.bufferScale != 0 || size.height % surface.bufferScale != 0)
    wrongs.emplace_back("a buffer's size is no multiple of its scale");
  for (auto* frame : std::exchange(surface.frames, {})) {
    send(frame, "done", 0U);
    wl_resource_destroy(frame);
  }
  if (surface.layer != nullptr && !surface.isConfigured) configure(surface);
}

void StandInCompositor::configure(StandInSurface& surface) {
  const bool fills = surface.anchors == allAnchors;
  surface.isConfigured = true;
  send(surface.layer, "configure", serial(), fills ? freeArea.width : surface.size[0],
       fills ? freeArea.height : surface.size[1]);
  configured(surface);
}

StandInSurface* StandInCompositor::find(const std::function<bool(const StandInSurface&)>& matches) {
  const auto found = std::ranges::find_if(surfaces.rbegin(), surfaces.rend(), matches);
  return found == surfaces.rend() ? nullptr : &*found;
}

StandInSurface* StandInCompositor::probe() {
  return find([](const auto& one) { return one.layer != nullptr && one.anchors == allAnchors; });
}

StandInSurface* StandInCompositor::widget() {
  return find([](const auto& one) {
    return one.layer != nullptr && one.anchors != allAnchors && one.takesInput;
  });
}

StandInSurface* StandInCompositor::shadow() {
  return find([](const auto& one) { return one.layer != nullptr && !one.takesInput; });
}

desktop::Extent StandInCompositor::sizeOf(wl_resource* buffer) {
  const auto known = buffers_.find(buffer);
  return known == buffers_.end() ? desktop::Extent{} : known->second;
}

}  // namespace tests
