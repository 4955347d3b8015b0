#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "platform/foundation/raii.hpp"

namespace platform {

/// How a program ended.
struct ProcessEnd {
  std::string failure;    ///< why it failed, in English; empty for exit status 0
  std::string output;     ///< what it printed, up to 1 MiB
  std::string complaint;  ///< what it wrote to standard error, up to 4 KiB
};

/// Runs a program in the main loop, in a process group of its own, with nothing to read. Whatever
/// it does, its end is delivered once, and nothing here waits for it; it never outlives this
/// program.
class Process {
 public:
  Process() = default;
  ~Process() { end(); }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  [[nodiscard]] bool isRunning() const { return source_ != 0; }
  /// Starts a program; not while one runs. `finished` is called from the main loop. When the
  /// deadline has passed, in running time, the program is killed and has failed.
  void start(std::vector<std::string> words, std::chrono::milliseconds deadline,
             std::function<void(const ProcessEnd&)> finished);
  /// Kills the program and forgets it; nothing is delivered.
  void end();

 private:
  static int failedToStart(void* process);
  static void exited(pid_t id, int status, void* process);
  static int tookTooLong(void* process);
  void kill() const;
  void deliver(const ProcessEnd& end);
  void forget();

  std::function<void(const ProcessEnd&)> finished_;
  Descriptor output_;
  Descriptor complaint_;
  pid_t id_ = 0;
  unsigned source_ = 0;
  unsigned timer_ = 0;
};

/// Starts a program that lives on without this one, with nothing to read and nowhere to write to,
/// and `startup`, unless it is empty, as its id on X11 and its token on Wayland, by which its
/// window may come to the front. Returns whether it could be started. `ended` is called from the
/// main loop should it end while this program is there.
bool startDetached(std::vector<std::string> words, const std::string& startup = "",
                   std::function<void(const ProcessEnd&)> ended = {});

/// A file of the installation that the running program belongs to, in its `bin` or its
/// `libexec/velmora`; empty without one.
std::string installedFile(const std::string& name);

/// A program of Velmora: of the same installation, else on PATH; empty without one.
std::string findProgram(const std::string& name);

}  // namespace platform
