#pragma once

#include <functional>
#include <vector>

namespace platform {

/// A child of a stack, along the stack's axis.
struct StackChild {
  double minimum = 0;  ///< the least length it can have
  double maximum = 0;  ///< the length it would take without bounds
  bool isSpacer = false;
  /// The length it takes when offered one.
  std::function<double(double offer)> lengthFor;
};

/// Shares a length out among the children of a stack and returns what each takes. Equal shares
/// are offered to the least flexible child first, and what it leaves goes to the others. Spacers
/// come last: everything else is served before them, down to their minimum, and they share what
/// remains.
std::vector<double> shareOut(double available, const std::vector<StackChild>& children);

}  // namespace platform
