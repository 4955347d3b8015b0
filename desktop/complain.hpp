#pragma once

#include <string>

namespace desktop {

/// A text of unknown origin for one line of a terminal: what would break the line or steer the
/// terminal becomes a space.
std::string terminalLine(const std::string& text);

/// Says one line on standard error.
void complain(const std::string& message);

}  // namespace desktop
