#pragma once

#include "desktop/screens/wayland_handles.hpp"
#include "desktop/widget_answer.hpp"

namespace desktop {

/// Pixels in memory that is the compositor's: nothing of them stays in this process. Each surface
/// that shows them shares them, so that they go once the last one shows something else.
using WaylandBuffer = std::shared_ptr<wl_buffer>;

/// A picture as a buffer. Throws std::runtime_error when there is no memory to be had.
WaylandBuffer makeBuffer(wl_shm* memory, cairo_surface_t* picture);

/// A single transparent pixel.
WaylandBuffer makeTransparentBuffer(wl_shm* memory);

}  // namespace desktop
