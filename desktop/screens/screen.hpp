#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "desktop/placement.hpp"
#include "desktop/widget_program.hpp"

namespace desktop {

/// Where the menu is asked for: on X11 in device pixels of the whole screen, on Wayland in points
/// from the top left of an output's free area.
struct MenuSpot {
  Point at;
  Area output;  ///< in points, the place of that output among all; empty on X11
};

/// What a screen reports, always from the main loop.
struct ScreenEvents {
  /// The scale has become known or has changed, or what was shown is gone.
  std::function<void()> changed;
  /// Dragged to there: the monitor's name, and points from its work area's top left.
  std::function<void(const std::string& monitor, Point position)> moved;
  /// Clicked, or Return was pressed; with `startup` (empty where there is none) the program that
  /// opens a window for it may bring that to the front.
  std::function<void(const std::string& startup)> opened;
  std::function<void(const MenuSpot& spot)> menuAsked;
  /// The user closed the window.
  std::function<void()> closed;
  /// The display has gone.
  std::function<void()> lost;
};

/// Puts a picture on the screen, below all windows.
class Screen {
 public:
  Screen() = default;
  virtual ~Screen() = default;
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  /// Puts the picture where the placement says; its family does not count until `show`.
  virtual void place(const Placement& placement) = 0;
  /// Shows a picture, which need not be kept. It has the size of its look.
  virtual void show(const Picture& picture, const Look& look) = 0;
  /// What is shown now.
  [[nodiscard]] virtual std::optional<Look> shown() const = 0;
  /// The scale of the place where the widget stands; absent until it is known.
  [[nodiscard]] virtual std::optional<Scale> scale() const = 0;
  /// "wayland" or "x11", for programs that are to open on the same display.
  [[nodiscard]] virtual const char* kind() const = 0;
};

/// Opens the display: Wayland with a layer shell, else X11; on Wayland without a layer shell, X11
/// by way of XWayland, which is said once on standard error. The placement tells the monitor and
/// the first size. Throws std::runtime_error, with one line that says what to do.
std::unique_ptr<Screen> openScreen(const ScreenEvents& events, const Placement& placement);

}  // namespace desktop
