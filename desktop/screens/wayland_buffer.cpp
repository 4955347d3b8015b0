#include "desktop/screens/wayland_buffer.hpp"

#include <sys/mman.h>
#include <unistd.h>

#include <stdexcept>

namespace desktop {

namespace {

using Context = platform::Owned<cairo_t, cairo_destroy>;
using Pool = WaylandOwned<wl_shm_pool>;

/// Memory that two processes share, seen from this one.
class Mapping {
 public:
  Mapping(int descriptor, std::size_t size)
      : size_(size),
        memory_(mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0)) {
    if (memory_ == MAP_FAILED) throw std::runtime_error("there is no memory for a picture");
  }
  ~Mapping() { munmap(memory_, size_); }
  Mapping(const Mapping&) = delete;
  Mapping& operator=(const Mapping&) = delete;

  [[nodiscard]] unsigned char* bytes() const { return static_cast<unsigned char*>(memory_); }

 private:
  std::size_t size_;
  void* memory_;
};

}  // namespace

WaylandBuffer makeBuffer(wl_shm* memory, cairo_surface_t* picture) {
  const int width = cairo_image_surface_get_width(picture);
  const int height = cairo_image_surface_get_height(picture);
  const int stride = cairo_format_stride_for_width(CAIRO_FORMAT_ARGB32, width);
  const auto size = static_cast<std::size_t>(stride) * static_cast<std::size_t>(height);
  const platform::Descriptor file(memfd_create("velmora picture", MFD_CLOEXEC));
  if (!file || ftruncate(file.get(), static_cast<off_t>(size)) != 0)
    throw std::runtime_error("there is no memory for a picture");
  const Mapping mapping(file.get(), size);
  {
    const Picture target(cairo_image_surface_create_for_data(mapping.bytes(), CAIRO_FORMAT_ARGB32,
                                                             width, height, stride));
    const Context context(cairo_create(target.get()));
    cairo_set_operator(context.get(), CAIRO_OPERATOR_SOURCE);
    cairo_set_source_surface(context.get(), picture, 0, 0);
    cairo_paint(context.get());
  }
  const Pool pool(wl_shm_create_pool(memory, file.get(), static_cast<std::int32_t>(size)));
  // Both mean the same: premultiplied, alpha in the highest byte.
  return {wl_shm_pool_create_buffer(pool.get(), 0, width, height, stride, WL_SHM_FORMAT_ARGB8888),
          ReleaseWayland{}};
}

WaylandBuffer makeTransparentBuffer(wl_shm* memory) {
  const Picture pixel(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 1, 1));
  return makeBuffer(memory, pixel.get());
}

}  // namespace desktop
