#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "companion/window/model.hpp"
#include "companion/window/timer.hpp"
#include "companion/window/widgets.hpp"
#include "desktop/placement.hpp"
#include "platform/processes/process.hpp"

namespace companion::window {

/// The widget on the desktop, as velmora-desktop shows it: whether it runs, whether it starts at
/// login, where it stands. Never waits for it.
class DesktopHost {
 public:
  explicit DesktopHost(std::function<void()> changed);
  ~DesktopHost();
  DesktopHost(const DesktopHost&) = delete;
  DesktopHost& operator=(const DesktopHost&) = delete;

  [[nodiscard]] bool isInstalled() const { return !program_.empty(); }
  [[nodiscard]] bool isRunning() const { return isRunning_; }
  [[nodiscard]] bool isAtLogin() const { return isAtLogin_; }
  /// Whether a start or an end is under way.
  [[nodiscard]] bool isChanging() const { return isChanging_; }
  [[nodiscard]] const desktop::Placement& placement() const { return placement_; }
  /// What did not work last, with the host's own words; stays until something else is done.
  [[nodiscard]] const std::optional<Notice>& problem() const { return problem_; }

  /// Starts or ends it, for now.
  void show(bool shown);
  void startAtLogin(bool starts);
  /// Chooses how it looks and where it stands; kept at once, also while it does not run.
  void place(const desktop::Placement& placement);

 private:
  void watchHost();
  void watchChoices();
  void nameChanged(bool isOwned);
  void choicesChanged();
  void store();
  void call(const std::vector<std::string>& words);
  void start();
  void ended(const platform::ProcessEnd& end);
  void fail(const std::string& title, const std::string& details);
  void notify() const;
  /// Runs work beside that may throw platform::FileError, then tells, unless this is gone.
  void keep(std::function<void()> work, const std::string& whatFailed);

  std::function<void()> changed_;
  std::string program_;
  bool isRunning_ = false;
  bool isAtLogin_ = false;
  bool isChanging_ = false;
  std::optional<Notice> problem_;
  int calls_ = 0;  ///< under way
  desktop::Placement placement_;
  guint watch_ = 0;
  Timer patience_;
  Reference<GDBusConnection> bus_;
  Reference<GFileMonitor> monitor_;
  Reference<GCancellable> cancellable_{g_cancellable_new()};
  /// Gone with this, for what comes back later.
  std::shared_ptr<bool> life_ = std::make_shared<bool>(true);
};

}  // namespace companion::window
