#include "companion/window/monitors.hpp"

#include <charconv>

#include "companion/window/widgets.hpp"

namespace companion::window {

namespace {

std::string text(const char* characters) { return characters == nullptr ? "" : characters; }

std::string nameOf(GdkMonitor* monitor, const std::string& connector) {
  auto name = text(gdk_monitor_get_manufacturer(monitor));
  const auto model = text(gdk_monitor_get_model(monitor));
  if (!name.empty() && !model.empty()) name += " ";
  name += model;
  if (name.empty() || name == connector) return connector;
  return name + " (" + connector + ")";
}

}  // namespace

std::vector<Monitor> monitorsOf(GdkDisplay* display) {
  std::vector<Monitor> monitors;
  GListModel* list = gdk_display_get_monitors(display);
  for (guint i = 0; i < g_list_model_get_n_items(list); ++i) {
    const Reference<GdkMonitor> monitor(GDK_MONITOR(g_list_model_get_item(list, i)));
    const auto connector = text(gdk_monitor_get_connector(monitor.get()));
    if (!connector.empty()) monitors.push_back({connector, nameOf(monitor.get(), connector)});
  }
  return monitors;
}

std::optional<std::string> connectorOf(const std::string& chosen,
                                       const std::vector<Monitor>& monitors) {
  if (chosen.empty()) return chosen;
  std::size_t number = monitors.size();
  const auto [end, error] = std::from_chars(chosen.data(), chosen.data() + chosen.size(), number);
  const bool isNumber = error == std::errc{} && end == chosen.data() + chosen.size();
  if (isNumber && number < monitors.size()) return monitors[number].connector;
  for (const auto& monitor : monitors)
    if (monitor.connector == chosen) return chosen;
  return std::nullopt;
}

}  // namespace companion::window
