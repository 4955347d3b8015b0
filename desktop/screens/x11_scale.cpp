#include "desktop/screens/x11_scale.hpp"

#include "desktop/screens/xsettings.hpp"

namespace desktop {

namespace {

constexpr double dotsPerInch = 96;

}  // namespace

Scale sessionScale(const X11Display& display) {
  if (const char* set = std::getenv("GDK_SCALE"); set != nullptr && std::atoi(set) > 0)
    return scaleOf(std::atoi(set));
  if (const auto manager = display.owner(display.settingsSelection())) {
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(display.connection(), manager, XCB_CW_EVENT_MASK, &events);
    const auto settings = display.bytes(manager, "_XSETTINGS_SETTINGS");
    const auto factor = xsettingsInteger(settings, "Gdk/WindowScalingFactor").value_or(1);
    if (factor > 1) return scaleOf(factor);
    const auto dpi = xsettingsInteger(settings, "Xft/DPI").value_or(0);  // in 1024ths
    if (dpi > 0) return scaleOf(dpi / 1024.0 / dotsPerInch);
  }
  const auto resources = display.bytes(display.root(), "RESOURCE_MANAGER");
  const auto dpi = resourceDpi({reinterpret_cast<const char*>(resources.data()), resources.size()});
  return scaleOf(dpi.value_or(dotsPerInch) / dotsPerInch);
}

}  // namespace desktop
