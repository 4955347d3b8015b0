#include "companion/window/desktop_host.hpp"

#include "companion/main_loop_tasks.hpp"
#include "companion/window/autostart.hpp"
#include "desktop/running_host.hpp"
#include "platform/foundation/files.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using desktop::Placement;
using platform::localizedString;

namespace {

/// A host that has not come or gone by then never will.
constexpr std::chrono::seconds longestChange{10};

/// What turns one choice into another, as the host takes it; no words when nothing is different.
std::vector<std::string> wordsFor(const Placement& placement, const Placement& before) {
  std::vector<std::string> words;
  const auto add = [&words](bool differs, const char* option, const std::string& value) {
    if (differs) words.insert(words.end(), {option, value});
  };
  add(placement.family != before.family, "--family", platform::familyShortName(placement.family));
  add(placement.monitor != before.monitor, "--monitor", placement.monitor);
  add(!placement.moved && (placement.corner != before.corner || before.moved), "--corner",
      desktop::cornerName(placement.corner));
  add(placement.hidesAmounts != before.hidesAmounts, "--amounts",
      placement.hidesAmounts ? "hide" : "show");
  return words;
}

}  // namespace

DesktopHost::DesktopHost(std::function<void()> changed)
    : changed_(std::move(changed)),
      program_(platform::findProgram("velmora-desktop")),
      isAtLogin_(startsAtLogin()),
      placement_(desktop::keptPlacement()) {
  watchHost();
  watchChoices();
}

DesktopHost::~DesktopHost() {
  g_cancellable_cancel(cancellable_.get());
  if (watch_ != 0) g_bus_unwatch_name(watch_);
}

void DesktopHost::watchHost() {
  watch_ = g_bus_watch_name(
      G_BUS_TYPE_SESSION, desktop::hostBusName, G_BUS_NAME_WATCHER_FLAGS_NONE,
      [](GDBusConnection* bus, const char*, const char*, gpointer host) {
        auto* self = static_cast<DesktopHost*>(host);
        self->bus_.reset(G_DBUS_CONNECTION(g_object_ref(bus)));
        self->nameChanged(true);
      },
      [](GDBusConnection*, const char*, gpointer host) {
        static_cast<DesktopHost*>(host)->nameChanged(false);
      },
      this, nullptr);
}

void DesktopHost::watchChoices() {
  const auto choices = desktop::placementFile();
  const Reference<GFile> file(g_file_new_for_path(choices.c_str()));
  // GLib looks for a folder that is missing again and again.
  platform::makePrivateFolders(choices.parent_path());
  monitor_.reset(g_file_monitor_file(file.get(), G_FILE_MONITOR_NONE, nullptr, nullptr));
  if (monitor_) connect(monitor_.get(), "changed", [this] { choicesChanged(); });
}

void DesktopHost::notify() const {
  if (changed_) changed_();
}

void DesktopHost::fail(const std::string& title, const std::string& details) {
  isChanging_ = false;
  problem_ = Notice{.title = title, .advice = "", .details = details};
  notify();
}

void DesktopHost::nameChanged(bool isOwned) {
  if (isOwned == isRunning_) return;
  isRunning_ = isOwned;
  isChanging_ = false;
  if (isOwned) problem_.reset();
  patience_.stop();
  notify();
}

void DesktopHost::choicesChanged() {
  auto kept = std::make_shared<Placement>();
  runBeside([kept] { *kept = desktop::keptPlacement(); },
            [this, kept, life = std::weak_ptr<bool>(life_)] {
              if (life.expired() || calls_ > 0 || !isRunning_ || *kept == placement_) return;
              placement_ = *kept;
              notify();
            });
}

void DesktopHost::place(const Placement& placement) {
  const auto words = wordsFor(placement, placement_);
  placement_ = placement;
  notify();
  if (words.empty()) return;
  if (isRunning_) {
    call(words);
  } else {
    store();
  }
}

void DesktopHost::keep(std::function<void()> work, const std::string& whatFailed) {
  auto problem = std::make_shared<std::string>();
  runBeside(
      [work = std::move(work), problem] {
        try {
          work();
        } catch (const platform::FileError& error) {
          *problem = error.what();
        }
      },
      [this, problem, whatFailed, life = std::weak_ptr<bool>(life_)] {
        if (life.expired()) return;
        isAtLogin_ = startsAtLogin();
        if (!problem->empty()) return fail(whatFailed, *problem);
        notify();
      });
}

/// For the next start.
void DesktopHost::store() {
  keep([placement = placement_] { desktop::storePlacement(placement, desktop::placementFile()); },
       localizedString("The choice could not be kept"));
}

/// Calls arrive in their order, so that the last choice is the one that stays.
void DesktopHost::call(const std::vector<std::string>& words) {
  ++calls_;
  desktop::callRunningHost(bus_.get(), {words, "/", {}}, cancellable_.get(),
                           [this](const std::optional<desktop::HostAnswer>& answer) {
                             --calls_;
                             if (!answer) return store();  // it has just ended
                             if (answer->status != 0)
                               fail(localizedString("The widget did not take the change"),
                                    answer->line);
                             choicesChanged();
                           });
}

void DesktopHost::startAtLogin(bool starts) {
  isAtLogin_ = starts;
  keep([starts, program = program_] { setStartsAtLogin(starts, program); },
       localizedString("The start at login could not be changed"));
}

void DesktopHost::show(bool shown) {
  if (shown == isRunning_ || isChanging_) return;
  isChanging_ = true;
  problem_.reset();
  patience_.start(longestChange, [this] {
    fail(localizedString("The widget on the desktop does not answer"), "");
  });
  notify();
  if (shown) return start();
  call({"--quit"});
}

void DesktopHost::start() {
  const bool isStarted = platform::startDetached(
      {program_}, "", [this, life = std::weak_ptr<bool>(life_)](const platform::ProcessEnd& end) {
        if (!life.expired()) ended(end);
      });
  if (!isStarted) ended({.failure = program_});
}

void DesktopHost::ended(const platform::ProcessEnd& end) {
  patience_.stop();
  isChanging_ = false;
  if (end.failure.empty()) return notify();
  fail(localizedString("The widget could not be shown on this desktop"),
       end.complaint.empty() ? end.failure : end.complaint);
}

}  // namespace companion::window
