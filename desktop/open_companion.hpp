#pragma once

#include <string>

namespace desktop {

/// Opens Velmora's window. With `startup`, which may be empty, it may come to the front.
void openCompanion(const std::string& startup);

}  // namespace desktop
