#include "tests/support/pixels.hpp"

#include <png.h>

namespace tests {

Pixels readPng(const std::string& bytes) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()) == 0) return {};
  image.format = PNG_FORMAT_RGBA;
  Pixels pixels{static_cast<int>(image.width), static_cast<int>(image.height), {}};
  pixels.all.resize(std::size_t{image.width} * image.height);
  if (png_image_finish_read(&image, nullptr, pixels.all.data(), 0, nullptr) == 0) return {};
  return pixels;
}

}  // namespace tests
