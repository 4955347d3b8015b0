#include "desktop/screens/x11_window.hpp"

#include <cairo-xcb.h>
#include <limits.h>
#include <unistd.h>
#include <xcb/shape.h>

#include <array>

#include "desktop/screens/picture_rows.hpp"

namespace desktop {

namespace {

using Context = platform::Owned<cairo_t, cairo_destroy>;

constexpr std::uint32_t everyDesktop = 0xffffffff;

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

std::string hostName() {
  std::array<char, HOST_NAME_MAX + 1> name{};
  return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

}  // namespace

X11Window::X11Window(std::shared_ptr<const X11Display> display, bool transparent)
    : display_(std::move(display)), transparent_(transparent) {
  const auto& screen = display_->screen();
  visual_ = transparent_ ? findVisual(screen, 32, XCB_NONE) : nullptr;
  transparent_ = visual_ != nullptr;
  depth_ = transparent_ ? 32 : screen.root_depth;
  if (visual_ == nullptr) visual_ = findVisual(screen, 0, screen.root_visual);
  create();
  setHints();
}

X11Window::~X11Window() {
  xcb_destroy_window(display_->connection(), window_);
  xcb_free_colormap(display_->connection(), colormap_);
}

void X11Window::create() {
  auto* connection = display_->connection();
  // Kept as long as the window: a window manager makes its frame with it.
  colormap_ = xcb_generate_id(connection);
  xcb_create_colormap(connection, XCB_COLORMAP_ALLOC_NONE, colormap_, display_->root(),
                      visual_->visual_id);
  window_ = xcb_generate_id(connection);
  const std::array<std::uint32_t, 4> values{
      0, XCB_GRAVITY_NORTH_WEST,
      XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_BUTTON_1_MOTION |
          XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_STRUCTURE_NOTIFY,
      colormap_};
  xcb_create_window(connection, depth_, window_, display_->root(), 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, visual_->visual_id,
                    XCB_CW_BORDER_PIXEL | XCB_CW_BIT_GRAVITY | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
                    values.data());
}

void X11Window::setHints() const {
  const auto& display = *display_;
  const auto atoms = [&](std::string_view property, const std::vector<std::string_view>& names) {
    std::vector<std::uint32_t> values;
    for (const auto name : names) values.push_back(display.atom(name));
    display.setNumbers(window_, property, XCB_ATOM_ATOM, values);
  };
  // Of the types that stay below other windows, "show desktop" spares this one alone.
  atoms("_NET_WM_WINDOW_TYPE", {"_NET_WM_WINDOW_TYPE_DESKTOP"});
  atoms("_NET_WM_STATE", {"_NET_WM_STATE_BELOW", "_NET_WM_STATE_SKIP_TASKBAR",
                          "_NET_WM_STATE_SKIP_PAGER", "_NET_WM_STATE_STICKY"});
  atoms("WM_PROTOCOLS", {"WM_DELETE_WINDOW", "_NET_WM_PING"});
  display.setNumbers(window_, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, {everyDesktop});
  display.setNumbers(window_, "_NET_WM_USER_TIME", XCB_ATOM_CARDINAL, {0});  // no focus when mapped
  display.setNumbers(window_, "_NET_WM_PID", XCB_ATOM_CARDINAL,
                     {static_cast<std::uint32_t>(getpid())});
  // Motif's hints: decorations are told, and there are none.
  display.setNumbers(window_, "_MOTIF_WM_HINTS", display.atom("_MOTIF_WM_HINTS"), {2, 0, 0, 0, 0});
  // The window may have the keyboard (ICCCM 4.1.2.4: the input flag).
  display.setNumbers(window_, "WM_HINTS", display.atom("WM_HINTS"), {1, 1, 0, 0, 0, 0, 0, 0, 0});
  display.setText(window_, "WM_CLIENT_MACHINE", hostName());
  display.setText(window_, "WM_CLASS", std::string_view("velmora-desktop\0Velmora-desktop\0", 32));
  display.setText(window_, "WM_NAME", "Velmora");
  display.setText(window_, "_NET_WM_NAME", "Velmora");
}

/// The user does not resize it, and the place is the window's own (ICCCM 4.1.2.3).
void X11Window::fixSize() const {
  enum : std::uint32_t { position = 4, minimum = 16, maximum = 32, gravity = 512 };
  const auto width = static_cast<std::uint32_t>(area_.width);
  const auto height = static_cast<std::uint32_t>(area_.height);
  std::vector<std::uint32_t> hints(18);
  hints[0] = position | minimum | maximum | gravity;
  hints[5] = hints[7] = width;
  hints[6] = hints[8] = height;
  hints[17] = XCB_GRAVITY_STATIC;
  display_->setNumbers(window_, "WM_NORMAL_HINTS", XCB_ATOM_WM_SIZE_HINTS, hints);
}

void X11Window::show(cairo_surface_t* picture, Point position) {
  area_ = {position.x, position.y, cairo_image_surface_get_width(picture),
           cairo_image_surface_get_height(picture)};
  fixSize();
  paint(picture);
  const std::array<std::int32_t, 4> values{area_.x, area_.y, area_.width, area_.height};
  xcb_configure_window(display_->connection(), window_,
                       XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                           XCB_CONFIG_WINDOW_HEIGHT,
                       values.data());
  if (!isMapped_) xcb_map_window(display_->connection(), window_);
  xcb_clear_area(display_->connection(), 0, window_, 0, 0, 0, 0);
  isMapped_ = true;
}

void X11Window::paint(cairo_surface_t* picture) const {
  auto* connection = display_->connection();
  const auto pixmap = xcb_generate_id(connection);
  xcb_create_pixmap(connection, depth_, pixmap, window_, static_cast<std::uint16_t>(area_.width),
                    static_cast<std::uint16_t>(area_.height));
  {
    const Picture target(
        cairo_xcb_surface_create(connection, pixmap, visual_, area_.width, area_.height));
    const Context context(cairo_create(target.get()));
    cairo_set_operator(context.get(), CAIRO_OPERATOR_SOURCE);
    cairo_set_source_surface(context.get(), picture, 0, 0);
    cairo_paint(context.get());
    cairo_surface_finish(target.get());
  }
  xcb_change_window_attributes(connection, window_, XCB_CW_BACK_PIXMAP, &pixmap);
  xcb_free_pixmap(connection, pixmap);
  std::vector<xcb_rectangle_t> shape;
  if (!transparent_) {
    for (const auto& row : opaqueRows(picture))
      shape.push_back({static_cast<std::int16_t>(row.x), static_cast<std::int16_t>(row.y),
                       static_cast<std::uint16_t>(row.width),
                       static_cast<std::uint16_t>(row.height)});
    xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                         XCB_CLIP_ORDERING_YX_BANDED, window_, 0, 0,
                         static_cast<std::uint32_t>(shape.size()), shape.data());
  }
}

void X11Window::moveTo(Point position) {
  if (position == this->position()) return;
  area_.x = position.x;
  area_.y = position.y;
  const std::array<std::int32_t, 2> values{position.x, position.y};
  xcb_configure_window(display_->connection(), window_, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                       values.data());
}

void X11Window::takeFocus(xcb_timestamp_t time) const {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window_;
  message.type = display_->atom("_NET_ACTIVE_WINDOW");
  message.data.data32[0] = 1;  // an application asks
  message.data.data32[1] = time;
  xcb_send_event(display_->connection(), 0, display_->root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&message));
}

}  // namespace desktop
