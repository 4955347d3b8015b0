#pragma once

namespace desktop {

// Lengths are in points or in device pixels, as each user says; y grows downwards.

struct Point {
  int x = 0;
  int y = 0;

  bool operator==(const Point&) const = default;
};

struct Extent {
  int width = 0;
  int height = 0;

  bool operator==(const Extent&) const = default;
};

struct Area {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  bool operator==(const Area&) const = default;
};

}  // namespace desktop
