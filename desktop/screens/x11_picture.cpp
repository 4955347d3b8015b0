#include "desktop/screens/x11_picture.hpp"

#include <cairo-xcb.h>

#include "desktop/screens/picture_rows.hpp"
#include "desktop/widget_answer.hpp"

namespace desktop {

namespace {

using Context = platform::Owned<cairo_t, cairo_destroy>;

std::vector<xcb_rectangle_t> rectangles(const std::vector<Area>& areas) {
  std::vector<xcb_rectangle_t> rectangles;
  for (const auto& area : areas)
    rectangles.push_back({static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                          static_cast<std::uint16_t>(area.width),
                          static_cast<std::uint16_t>(area.height)});
  return rectangles;
}

}  // namespace

X11Picture::X11Picture(std::shared_ptr<const X11Display> display, const X11Visual& visual,
                       cairo_surface_t* picture)
    : display_(std::move(display)),
      size_{cairo_image_surface_get_width(picture), cairo_image_surface_get_height(picture)},
      pixmap_(xcb_generate_id(display_->connection())),
      shape_(rectangles(opaqueRows(picture))) {
  xcb_create_pixmap(display_->connection(), visual.depth, pixmap_, display_->root(),
                    static_cast<std::uint16_t>(size_.width),
                    static_cast<std::uint16_t>(size_.height));
  paint(visual, picture);
}

X11Picture::~X11Picture() { xcb_free_pixmap(display_->connection(), pixmap_); }

void X11Picture::paint(const X11Visual& visual, cairo_surface_t* picture) const {
  const Picture target(cairo_xcb_surface_create(display_->connection(), pixmap_, visual.type,
                                                size_.width, size_.height));
  const Context context(cairo_create(target.get()));
  cairo_set_operator(context.get(), CAIRO_OPERATOR_SOURCE);
  cairo_set_source_surface(context.get(), picture, 0, 0);
  cairo_paint(context.get());
  cairo_surface_finish(target.get());
}

}  // namespace desktop
