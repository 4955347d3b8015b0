#include "platform/views/sharing.hpp"

#include <algorithm>
#include <numeric>

namespace platform {

namespace {

/// Serves the children with these indices, the least flexible first; returns what is left.
double serve(double available, const std::vector<StackChild>& children,
             std::vector<std::size_t> indices, std::vector<double>& lengths) {
  std::stable_sort(indices.begin(), indices.end(), [&](std::size_t a, std::size_t b) {
    const double flexibilityOfA = children[a].maximum - children[a].minimum;
    const double flexibilityOfB = children[b].maximum - children[b].minimum;
    if (flexibilityOfA != flexibilityOfB) return flexibilityOfA < flexibilityOfB;
    return children[a].minimum > children[b].minimum;
  });
  auto left = static_cast<double>(indices.size());
  for (const auto index : indices) {
    lengths[index] = children[index].lengthFor(std::max(0.0, available / left));
    available -= lengths[index];
    left -= 1;
  }
  return available;
}

}  // namespace

std::vector<double> shareOut(double available, const std::vector<StackChild>& children) {
  std::vector<std::size_t> spacers;
  std::vector<std::size_t> others;
  double reserved = 0;
  for (std::size_t i = 0; i < children.size(); ++i) {
    (children[i].isSpacer ? spacers : others).push_back(i);
    if (children[i].isSpacer) reserved += children[i].minimum;
  }
  std::vector<double> lengths(children.size());
  const double left = serve(available - reserved, children, others, lengths);
  serve(left + reserved, children, spacers, lengths);
  return lengths;
}

}  // namespace platform
