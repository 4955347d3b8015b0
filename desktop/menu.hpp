#pragma once

#include <functional>
#include <string>

#include "desktop/placement.hpp"
#include "desktop/screens/screen.hpp"
#include "platform/processes/process.hpp"

namespace desktop {

/// What was chosen in the menu: a command and, for "family", "corner" and "amounts", a name; for
/// "open" what lets a window come to the front.
struct MenuChoice {
  std::string command;  ///< family, corner, amounts, refresh, open, quit; empty when nothing was
  std::string name;
};

/// Reads what the menu's program printed.
MenuChoice menuChoice(const std::string& output);

/// The widget's menu. It is drawn by a program of its own, which ends with it.
class Menu {
 public:
  /// Opens it, in place of one that is open. `chosen` is called from the main loop when something
  /// was chosen.
  void open(const MenuSpot& spot, const Placement& placement, const char* displayKind,
            std::function<void(const MenuChoice&)> chosen);

 private:
  platform::Process process_;
};

}  // namespace desktop
