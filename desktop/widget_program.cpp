#include "desktop/widget_program.hpp"

#include "desktop/placement.hpp"
#include "desktop/schedule.hpp"

namespace desktop {

namespace {

/// Beyond the picture itself: the file's own needs.
constexpr std::uintmax_t spare = 1U << 16U;

}  // namespace

Extent pictureSize(const Look& look) {
  const auto size = sizeInPoints(look.family);
  return {pixels(size.width, look.scale), pixels(size.height, look.scale)};
}

void WidgetProgram::ask(const Question& question, std::function<void(RunResult)> finished) {
  question_ = question;
  const auto size = pictureSize(question.look);
  std::string noFolder;
  std::vector<std::string> words;
  try {
    folder_.emplace(std::uintmax_t{4} * static_cast<unsigned>(size.width) *
                        static_cast<unsigned>(size.height) +
                    spare);
    words = {file_,      question.timeline ? "timeline" : "snapshot",
             "--family", platform::familyShortName(question.look.family),
             "--scale",  scaleText(question.look.scale),
             "--output", folder_->path() / "picture.png"};
  } catch (const std::runtime_error& error) {
    noFolder = error.what();
    words = {""};  // which cannot be started, so that the failure too comes from the main loop
  }
  process_.start(std::move(words), question.timeline ? longestRun : longestSnapshotRun,
                 [this, finished = std::move(finished), noFolder](const platform::ProcessEnd& end) {
                   auto result = noFolder.empty() ? collect(end) : RunResult{{}, nullptr, noFolder};
                   folder_.reset();
                   finished(std::move(result));
                 });
}

RunResult WidgetProgram::collect(const platform::ProcessEnd& end) const {
  if (!end.failure.empty()) return {{}, nullptr, end.failure};
  auto answer = parseAnswer(end.output);
  if (!answer) return {{}, nullptr, "what it printed is no answer"};
  const auto file = folder_->path() / "picture.png";
  auto picture = loadPicture(file, pictureSize(question_.look));
  if (!picture) return {{}, nullptr, "it wrote no picture of the right size to " + file.string()};
  return {std::move(answer), std::move(picture), ""};
}

void WidgetProgram::end() {
  process_.end();
  folder_.reset();
}

}  // namespace desktop
