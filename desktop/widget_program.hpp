#pragma once

#include <functional>
#include <optional>
#include <string>

#include "desktop/picture_folder.hpp"
#include "desktop/scale.hpp"
#include "desktop/widget_answer.hpp"
#include "platform/processes/process.hpp"
#include "platform/widgets/widget_family.hpp"

namespace desktop {

/// How a widget looks: its family, device pixels per point, and whether amounts can be read.
struct Look {
  platform::WidgetFamily family = platform::WidgetFamily::systemSmall;
  Scale scale;
  bool hidesAmounts = false;

  bool operator==(const Look&) const = default;
};

/// The size of a picture in pixels.
Extent pictureSize(const Look& look);

/// What to ask the widget program.
struct Question {
  bool timeline = false;  ///< else the figures at hand
  Look look;
};

/// A complete answer, or why there is none.
struct RunResult {
  std::optional<WidgetAnswer> answer;
  Picture picture;
  std::string failure;  ///< empty with an answer
};

/// Runs the widget program, one process at a time, in the main loop.
class WidgetProgram {
 public:
  explicit WidgetProgram(std::string file) : file_(std::move(file)) {}

  [[nodiscard]] bool isRunning() const { return process_.isRunning(); }
  [[nodiscard]] const Question& question() const { return question_; }
  /// Starts a process; not while one runs. `finished` is called from the main loop, once, whatever
  /// the program does and however long it takes.
  void ask(const Question& question, std::function<void(RunResult)> finished);
  /// Ends the process; nothing is delivered.
  void end();

 private:
  [[nodiscard]] RunResult collect(const platform::ProcessEnd& end) const;

  std::string file_;
  Question question_;
  std::optional<PictureFolder> folder_;
  platform::Process process_;
};

}  // namespace desktop
