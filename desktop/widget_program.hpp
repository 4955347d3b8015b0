#pragma once

#include <glib.h>
#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>

#include "desktop/widget_answer.hpp"

namespace desktop {

/// What to ask the widget program.
struct Question {
  bool timeline = false;  ///< else the figures at hand
  std::string family;
  int scale = 1;  ///< device pixels per point
  int width = 0;  ///< of the picture, in pixels
  int height = 0;
};

/// A complete answer, or why there is none.
struct RunResult {
  std::optional<WidgetAnswer> answer;
  Picture picture;
  std::string failure;  ///< empty with an answer
};

/// Runs the widget program, one process at a time, in the main loop. Whatever the program does,
/// the result is delivered once; a process is ended with its run and never outlives the host.
class WidgetProgram {
 public:
  explicit WidgetProgram(std::string file) : file_(std::move(file)) {}
  ~WidgetProgram() { end(); }
  WidgetProgram(const WidgetProgram&) = delete;
  WidgetProgram& operator=(const WidgetProgram&) = delete;

  [[nodiscard]] bool isRunning() const { return watch_ != 0; }
  /// Starts a process; not while one runs. `finished` is called from the main loop.
  void ask(const Question& question, std::function<void(RunResult)> finished);
  /// Kills the process if one runs; its result is a failure.
  void kill() const;
  /// Kills the process and forgets it; nothing is delivered.
  void end();

 private:
  static gboolean failedToStart(void* program);
  static void exited(pid_t process, int status, void* program);
  RunResult collect(int status) const;
  void clear();

  std::string file_;
  Question question_;
  std::function<void(RunResult)> finished_;
  pid_t process_ = 0;
  unsigned watch_ = 0;
  int output_ = -1;
  std::string folder_;
};

/// The widget program beside this one, else the one on PATH; absent when there is none.
std::optional<std::string> findWidgetProgram();

}  // namespace desktop
