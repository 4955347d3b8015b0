#pragma once

#include <glib.h>
#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/foundation/raii.hpp"

namespace desktop {

/// How a program ended.
struct ProcessEnd {
  std::string failure;  ///< why it failed, in English; empty for exit status 0
  std::string output;   ///< what it printed, up to 1 MiB
};

/// Runs a program in the main loop, in a process group of its own, with nothing to read. Whatever
/// it does, its end is delivered once, and nothing here waits for it; it never outlives the host.
class Process {
 public:
  Process() = default;
  ~Process() { end(); }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  [[nodiscard]] bool isRunning() const { return source_ != 0; }
  /// Starts a program; not while one runs. `finished` is called from the main loop.
  void start(std::vector<std::string> words, std::function<void(ProcessEnd)> finished);
  /// Kills the program, and delivers `failure` whether it dies or not.
  void giveUp(const std::string& failure);
  /// Kills the program and forgets it; nothing is delivered.
  void end();

 private:
  static gboolean failedToStart(void* process);
  static void exited(pid_t id, int status, void* process);
  void kill() const;
  void deliver(ProcessEnd end);
  void forget();

  std::function<void(ProcessEnd)> finished_;
  platform::Descriptor output_;
  pid_t id_ = 0;
  unsigned source_ = 0;
};

/// Starts a program that lives on without us, with nothing to read and nowhere to write to, and
/// `startup`, unless it is empty, as its id on X11 and its token on Wayland, by which its window
/// may come to the front. Returns whether it could be started.
bool startDetached(const std::string& file, const std::string& startup);

/// A program of Velmora: in `folder` (relative to that of the running one), else on PATH; empty
/// without one.
std::string findProgram(const std::string& folder, const std::string& name);

}  // namespace desktop
