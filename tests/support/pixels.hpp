#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace tests {

using Pixel = std::array<std::uint8_t, 4>;  ///< red, green, blue, opacity; not premultiplied

/// A picture's pixels, row by row.
struct Pixels {
  int width = 0;
  int height = 0;
  std::vector<Pixel> all;

  [[nodiscard]] const Pixel& at(int x, int y) const {
    return all[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x)];
  }
};

/// Reads a PNG; no pixels at all when it is none.
Pixels readPng(const std::string& bytes);

}  // namespace tests
