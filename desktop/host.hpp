#pragma once

#include <gio/gio.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "desktop/asking.hpp"
#include "desktop/command_line.hpp"
#include "desktop/menu.hpp"
#include "desktop/news.hpp"
#include "desktop/screen_reader.hpp"
#include "desktop/screens/screen.hpp"

namespace desktop {

/// Shows one widget where the user wants it: its pictures, its menu, its phrases, its news.
/// Whatever goes wrong, the last good picture stays.
class Host {
 public:
  /// Asks the widget program at once, before a display is opened. `quit` is called with an exit
  /// status. `bus` is the session bus, null without one.
  Host(const CommandLine& line, const std::string& program, GDBusConnection* bus,
       std::function<void(int)> quit);
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  /// Opens the display and keeps the choices. Throws std::runtime_error when there is none.
  void openDisplay();
  /// Takes the options of a further call.
  void apply(const CommandLine& line);
  /// "wayland" or "x11", once the display is open.
  [[nodiscard]] const char* displayKind() const { return screen_->kind(); }

 private:
  Asking::Events askingEvents();
  ScreenEvents screenEvents();
  void choose(const MenuChoice& choice);
  void change(Placement placement);
  void store() const;
  void screenChanged();
  void openMenu(const MenuSpot& spot);

  [[nodiscard]] Look wanted() const;
  [[nodiscard]] bool isSeen() const;
  void answered(RunResult result, const Look& look);
  void show(const RunResult& result, const Look& look);
  void showHidden(const Look& look);
  void hideAmounts();
  void say();

  std::function<void(int)> quit_;
  Placement placement_;
  std::unique_ptr<Screen> screen_;
  /// An answer that came before the screen could show it.
  std::optional<std::pair<RunResult, Look>> early_;
  Picture reduced_;  // of what is seen, for when its amounts are to be hidden
  std::vector<std::string> phrases_;
  Menu menu_;
  ScreenReader reader_;
  News news_;
  Asking asking_;
};

}  // namespace desktop
