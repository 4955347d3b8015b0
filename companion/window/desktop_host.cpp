#include "companion/window/desktop_host.hpp"

#include "companion/beside.hpp"
#include "companion/running_host.hpp"
#include "companion/window/autostart.hpp"
#include "platform/foundation/files.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedString;

namespace {

constexpr const char* busName = "com.brenvik.velmora.Desktop";
constexpr std::chrono::seconds callDeadline{10};

}  // namespace

DesktopHost::DesktopHost(Events events)
    : events_(std::move(events)),
      program_(findProgram("velmora-desktop")),
      isAtLogin_(startsAtLogin()),
      placement_(loadPlacement()) {
  watch_ = g_bus_watch_name(
      G_BUS_TYPE_SESSION, busName, G_BUS_NAME_WATCHER_FLAGS_NONE,
      [](GDBusConnection*, const char*, const char*, gpointer host) {
        static_cast<DesktopHost*>(host)->nameChanged(true);
      },
      [](GDBusConnection*, const char*, gpointer host) {
        static_cast<DesktopHost*>(host)->nameChanged(false);
      },
      this, nullptr);
  const Reference<GFile> file(g_file_new_for_path(placementFile().c_str()));
  // GLib looks for a folder that is missing again and again.
  platform::makePrivateFolders(placementFile().parent_path());
  monitor_.reset(g_file_monitor_file(file.get(), G_FILE_MONITOR_NONE, nullptr, nullptr));
  if (monitor_) connect(monitor_.get(), "changed", [this] { choicesChanged(); });
}

DesktopHost::~DesktopHost() {
  if (watch_ != 0) g_bus_unwatch_name(watch_);
}

void DesktopHost::notify() const {
  if (events_.changed) events_.changed();
}

std::function<void()> DesktopHost::whileAlive(std::function<void()> function) const {
  return [function = std::move(function), life = std::weak_ptr<bool>(life_)] {
    if (!life.expired()) function();
  };
}

void DesktopHost::fail(const std::string& problem) {
  isChanging_ = false;
  if (events_.failed) events_.failed(problem);
  notify();
}

void DesktopHost::nameChanged(bool isOwned) {
  if (isOwned == isRunning_) return;
  isRunning_ = isOwned;
  isChanging_ = false;
  if (!isOwned) waiting_.clear();
  notify();
}

void DesktopHost::choicesChanged() {
  auto kept = std::make_shared<Placement>();
  runBeside([kept] { *kept = loadPlacement(); }, whileAlive([this, kept] {
              if (call_ || !isRunning_ || *kept == placement_) return;
              placement_ = *kept;
              notify();
            }));
}

void DesktopHost::place(const Placement& placement) {
  auto options = optionsFor(placement, placement_);
  placement_ = placement;
  notify();
  if (isRunning_ && !options.empty()) send(std::move(options));
}

void DesktopHost::send(std::vector<std::string> options) {
  waiting_.push_back(std::move(options));
  if (!call_) sendNext();
}

/// One call after the other, so that the last choice is the one that stays.
void DesktopHost::sendNext() {
  call_.reset();
  if (waiting_.empty()) return choicesChanged();
  std::vector<std::string> command{program_};
  command.insert(command.end(), waiting_.front().begin(), waiting_.front().end());
  waiting_.pop_front();
  call_ = std::make_unique<Child>(command, callDeadline, [this](bool well) {
    if (!well) fail(localizedString("The widget on the desktop did not take the change."));
    sendNext();
  });
}

void DesktopHost::show(bool shown) {
  if (shown == isRunning_ || isChanging_) return;
  if (program_.empty())
    return fail(localizedString("The program velmora-desktop is not installed."));
  isChanging_ = true;
  auto problem = std::make_shared<std::string>();
  runBeside(
      [shown, program = program_, problem] {
        try {
          setStartsAtLogin(shown, program);
        } catch (const platform::FileError&) {
          *problem = localizedString("The start at login could not be changed.");
        }
      },
      whileAlive([this, shown, problem] {
        if (problem->empty()) isAtLogin_ = shown;
        if (!problem->empty() && events_.failed) events_.failed(*problem);
        if (shown)
          start();
        else
          send({"--quit"});
        notify();
      }));
}

void DesktopHost::start() {
  std::vector<std::string> command{program_};
  for (const auto& option : optionsFor(placement_)) command.push_back(option);
  startDetached(command, whileAlive([this] {
                  if (!isRunning_ && isChanging_)
                    fail(localizedString("The widget could not be shown on this desktop."));
                }));
}

}  // namespace companion::window
