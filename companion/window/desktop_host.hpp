#pragma once

#include <gio/gio.h>

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "companion/window/child.hpp"
#include "companion/window/placement.hpp"

namespace companion::window {

/// The widget on the desktop, as velmora-desktop shows it: whether it runs, now and at each login,
/// and where it stands. Never waits for it.
class DesktopHost {
 public:
  struct Events {
    std::function<void()> changed;
    std::function<void(const std::string& problem)> failed;
  };

  explicit DesktopHost(Events events);
  ~DesktopHost();
  DesktopHost(const DesktopHost&) = delete;
  DesktopHost& operator=(const DesktopHost&) = delete;

  [[nodiscard]] bool isInstalled() const { return !program_.empty(); }
  [[nodiscard]] bool isRunning() const { return isRunning_; }
  [[nodiscard]] bool isAtLogin() const { return isAtLogin_; }
  /// Whether a start or an end is under way.
  [[nodiscard]] bool isChanging() const { return isChanging_; }
  [[nodiscard]] const Placement& placement() const { return placement_; }

  /// Starts it, now and at each login, or ends it for both.
  void show(bool shown);
  /// Chooses a size or a place; a running widget takes it at once, another at its start.
  void place(const Placement& placement);

 private:
  void nameChanged(bool isOwned);
  void choicesChanged();
  void send(std::vector<std::string> options);
  void sendNext();
  void start();
  void fail(const std::string& problem);
  void notify() const;
  /// The same function, which does nothing once this is gone.
  [[nodiscard]] std::function<void()> whileAlive(std::function<void()> function) const;

  Events events_;
  std::string program_;
  bool isRunning_ = false;
  bool isAtLogin_ = false;
  bool isChanging_ = false;
  Placement placement_;
  guint watch_ = 0;
  Reference<GFileMonitor> monitor_;
  std::deque<std::vector<std::string>> waiting_;
  /// Gone with this, for what comes back later.
  std::shared_ptr<bool> life_ = std::make_shared<bool>(true);
  std::unique_ptr<Child> call_;
};

}  // namespace companion::window
