#include "desktop/scale.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <numeric>

namespace desktop {

namespace {

constexpr int one = 120;
constexpr int smallest = one / 2;
constexpr int largest = 8 * one;

double factor(Scale scale) { return static_cast<double>(scale.per120) / one; }

bool gives(int pixels, int points, Scale scale) {
  const double exact = pixels / factor(scale);
  return static_cast<int>(exact) == points || std::lround(exact) == points;
}

}  // namespace

Scale scaleOf(double factor) {
  if (!(factor > 0)) return {};
  const double clamped = std::clamp(factor * one, double{smallest}, double{largest});
  return {static_cast<int>(std::lround(clamped))};
}

int pixels(double points, Scale scale) {
  return static_cast<int>(std::lround(points * factor(scale)));
}

int points(int pixels, Scale scale) {
  return static_cast<int>(std::lround(pixels / factor(scale)));
}

std::string scaleText(Scale scale) {
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), factor(scale)).ptr;
  return {text.data(), end};
}

Scale deducedScale(Extent pixels, Extent points, int otherwise) {
  Scale simplest = scaleOf(otherwise);
  int denominator = one + 1;
  for (int candidate = smallest; candidate <= largest; ++candidate) {
    const Scale scale{candidate};
    if (one / std::gcd(candidate, one) >= denominator) continue;
    if (!gives(pixels.width, points.width, scale) || !gives(pixels.height, points.height, scale))
      continue;
    simplest = scale;
    denominator = one / std::gcd(candidate, one);
  }
  return simplest;
}

}  // namespace desktop
