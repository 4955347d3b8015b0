#include "desktop/screens/x11_visual.hpp"

namespace desktop {

namespace {

/// A visual of that depth, or of that number.
xcb_visualtype_t* findVisual(const xcb_screen_t& screen, std::uint8_t depth, xcb_visualid_t id) {
  auto depths = xcb_screen_allowed_depths_iterator(&screen);
  for (; depths.rem > 0; xcb_depth_next(&depths)) {
    auto visuals = xcb_depth_visuals_iterator(depths.data);
    for (; visuals.rem > 0; xcb_visualtype_next(&visuals)) {
      const bool rightDepth =
          depths.data->depth == depth && visuals.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR;
      if (visuals.data->visual_id == id || (id == XCB_NONE && rightDepth)) return visuals.data;
    }
  }
  return nullptr;
}

}  // namespace

X11Visual widgetVisual(const X11Display& display) {
  const auto& screen = display.screen();
  X11Visual visual{findVisual(screen, 32, XCB_NONE), 32, true};
  if (visual.type == nullptr)
    visual = {findVisual(screen, 0, screen.root_visual), screen.root_depth, false};
  // Not freed before the windows: a window manager makes its frame with it.
  visual.colormap = xcb_generate_id(display.connection());
  xcb_create_colormap(display.connection(), XCB_COLORMAP_ALLOC_NONE, visual.colormap,
                      display.root(), visual.type->visual_id);
  return visual;
}

}  // namespace desktop
