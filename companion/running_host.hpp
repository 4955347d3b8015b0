#pragma once

#include <string>
#include <vector>

namespace companion {

/// The file of a program of Velmora: beside this one, else on PATH; empty without one.
std::string findProgram(const std::string& name);

/// Tells a running velmora-desktop to fetch and show fresh figures; nothing happens when none
/// runs. Does not wait for it.
void refreshRunningHost();

}  // namespace companion
