#pragma once

#include <gio/gio.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace desktop {

// One host shows the widget in a session. It owns this name on the session bus, and a further call
// of the program, or the companion's window, hands it its words there.

inline constexpr const char* hostBusName = "com.brenvik.velmora.Desktop";
inline constexpr const char* hostObjectPath = "/com/brenvik/velmora/Desktop";
inline constexpr const char* hostInterface = "com.brenvik.velmora.Desktop";
inline constexpr const char* hostCallMethod = "Call";
/// Words, folder, X11 display, Wayland display; and back status and line.
inline constexpr const char* hostCallType = "(assss)";
inline constexpr const char* hostAnswerType = "(is)";

/// The displays that a program's surroundings name; empty for none.
struct Displays {
  std::string x11;      ///< ":0", without the number of a screen
  std::string wayland;  ///< the file of the compositor's socket
};

/// Those of this process.
Displays ownDisplays();

/// Whether a caller sits at another display than the one that a host of that kind ("x11" or
/// "wayland") uses. One without a display sits nowhere.
bool isElsewhere(const Displays& caller, const Displays& host, const std::string& kind);

/// A call of the program.
struct HostCall {
  std::vector<std::string> words;  ///< without the program's name
  std::string folder;              ///< relative files are taken from there
  Displays displays;
};

/// How it ended: an exit status, and the line that belongs to one that is not 0.
struct HostAnswer {
  int status = 0;
  std::string line;
};

/// Hands a call to the host that runs; never starts one and never is one. `answered` is called from
/// the main loop within a few seconds: with nothing when no host runs, with a status of 1 when it
/// does not answer. Not at all once it is cancelled.
void callRunningHost(GDBusConnection* bus, const HostCall& call, GCancellable* cancellable,
                     std::function<void(const std::optional<HostAnswer>&)> answered);

}  // namespace desktop
