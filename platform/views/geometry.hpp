#pragma once

#include <optional>

namespace platform {

// Lengths are in points; x grows to the right and y downwards.

struct Size {
  double width = 0;
  double height = 0;

  bool operator==(const Size&) const = default;
};

struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  [[nodiscard]] Size size() const { return {width, height}; }
  bool operator==(const Rect&) const = default;
};

/// The room that a container offers. An absent length asks for the ideal one; infinity asks for
/// the largest.
struct Proposal {
  std::optional<double> width;
  std::optional<double> height;

  bool operator==(const Proposal&) const = default;
};

}  // namespace platform
