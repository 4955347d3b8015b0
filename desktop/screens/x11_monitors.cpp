#include "desktop/screens/x11_monitors.hpp"

#include <xcb/randr.h>

namespace desktop {

namespace {

std::string atomName(const X11Display& display, xcb_atom_t atom) {
  const X11Owned<xcb_get_atom_name_reply_t> reply(xcb_get_atom_name_reply(
      display.connection(), xcb_get_atom_name(display.connection(), atom), nullptr));
  if (!reply) return "";
  return {xcb_get_atom_name_name(reply.get()),
          static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

Area wholeScreen(const X11Display& display) {
  // The server tells the size at the time of the connection only once.
  const X11Owned<xcb_get_geometry_reply_t> reply(xcb_get_geometry_reply(
      display.connection(), xcb_get_geometry(display.connection(), display.root()), nullptr));
  if (!reply) return {0, 0, display.screen().width_in_pixels, display.screen().height_in_pixels};
  return {0, 0, reply->width, reply->height};
}

bool hasMonitors(const X11Display& display) {
  const auto* extension = xcb_get_extension_data(display.connection(), &xcb_randr_id);
  if (extension == nullptr || extension->present == 0) return false;
  const X11Owned<xcb_randr_query_version_reply_t> version(xcb_randr_query_version_reply(
      display.connection(), xcb_randr_query_version(display.connection(), 1, 5), nullptr));
  return version && (version->major_version > 1 || version->minor_version >= 5);
}

Area areaAt(const std::vector<std::uint32_t>& values, std::size_t at) {
  return {static_cast<int>(values[at]), static_cast<int>(values[at + 1]),
          static_cast<int>(values[at + 2]), static_cast<int>(values[at + 3])};
}

}  // namespace

std::vector<Monitor> screenMonitors(const X11Display& display) {
  std::vector<Monitor> monitors;
  if (hasMonitors(display)) {
    const X11Owned<xcb_randr_get_monitors_reply_t> reply(xcb_randr_get_monitors_reply(
        display.connection(), xcb_randr_get_monitors(display.connection(), display.root(), 1),
        nullptr));
    if (reply) {
      auto next = xcb_randr_get_monitors_monitors_iterator(reply.get());
      for (; next.rem > 0; xcb_randr_monitor_info_next(&next)) {
        const auto& info = *next.data;
        monitors.push_back({atomName(display, info.name),
                            info.primary != 0,
                            {info.x, info.y, info.width, info.height}});
      }
    }
  }
  if (monitors.empty()) monitors.push_back({"", true, wholeScreen(display)});
  return monitors;
}

Area workArea(const X11Display& display, const Monitor& monitor) {
  const auto desktops = display.numbers(display.root(), "_NET_CURRENT_DESKTOP");
  const std::size_t desktop = desktops.empty() ? 0 : desktops[0];
  // One area for each monitor, where the window manager knows them.
  const auto several =
      display.numbers(display.root(), "_GTK_WORKAREAS_D" + std::to_string(desktop));
  for (std::size_t i = 0; i + 4 <= several.size(); i += 4) {
    const auto shared = intersection(areaAt(several, i), monitor.area);
    if (shared.width > 0) return shared;
  }
  const auto all = display.numbers(display.root(), "_NET_WORKAREA");
  if (all.size() < 4) return monitor.area;
  const std::size_t at = desktop * 4 + 4 <= all.size() ? desktop * 4 : 0;
  const auto shared = intersection(areaAt(all, at), monitor.area);
  return shared.width > 0 ? shared : monitor.area;
}

}  // namespace desktop
