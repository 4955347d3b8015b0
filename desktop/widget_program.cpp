#include "desktop/widget_program.hpp"

#include <fcntl.h>
#include <glib.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <vector>

namespace desktop {

namespace fs = std::filesystem;

namespace {

constexpr rlim_t largestFile = 64U << 20U;
constexpr std::size_t largestOutput = 1U << 20U;

/// In the new process, before the program starts.
void prepareChild(gpointer) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);  // a host that dies takes it along
  const rlimit size{largestFile, largestFile};
  setrlimit(RLIMIT_FSIZE, &size);  // floods end it
  setpgid(0, 0);                   // with all that it starts
}

std::string readAll(int descriptor) {
  struct stat status{};
  if (fstat(descriptor, &status) != 0) return "";
  std::string text(std::min(largestOutput, static_cast<std::size_t>(status.st_size)), '\0');
  const auto count = pread(descriptor, text.data(), text.size(), 0);
  text.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
  return text;
}

}  // namespace

void WidgetProgram::ask(const Question& question, std::function<void(RunResult)> finished) {
  question_ = question;
  finished_ = std::move(finished);
  gchar* folder = g_dir_make_tmp("velmora-desktop-XXXXXX", nullptr);
  folder_ = folder == nullptr ? "" : folder;
  g_free(folder);
  output_ = memfd_create("velmora-widget output", MFD_CLOEXEC);
  if (folder_.empty() || output_ < 0) {
    watch_ = g_idle_add(failedToStart, this);
    return;
  }
  const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);

  std::vector<std::string> words{file_,      question.timeline ? "timeline" : "snapshot",
                                 "--family", question.family,
                                 "--scale",  std::to_string(question.scale),
                                 "--output", folder_ + "/picture.png"};
  std::vector<char*> arguments;
  for (auto& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const auto flags = static_cast<GSpawnFlags>(G_SPAWN_DO_NOT_REAP_CHILD | G_SPAWN_CLOEXEC_PIPES);
  GPid process = 0;
  g_spawn_async_with_fds(nullptr, arguments.data(), nullptr, flags, prepareChild, nullptr, &process,
                         nothing, output_, nothing, nullptr);
  close(nothing);
  if (process != 0) {
    process_ = process;
    watch_ = g_child_watch_add(process, exited, this);
    return;
  }
  // The caller is told from the main loop, as always.
  watch_ = g_idle_add(failedToStart, this);
}

gboolean WidgetProgram::failedToStart(void* program) {
  auto* self = static_cast<WidgetProgram*>(program);
  self->watch_ = 0;
  self->clear();
  self->finished_({{}, nullptr, "it could not be started"});
  return G_SOURCE_REMOVE;
}

void WidgetProgram::exited(pid_t, int status, void* program) {
  auto* self = static_cast<WidgetProgram*>(program);
  self->watch_ = 0;
  auto result = self->collect(status);
  ::kill(-self->process_, SIGKILL);  // what it may have left running
  self->process_ = 0;
  self->clear();
  self->finished_(std::move(result));
}

RunResult WidgetProgram::collect(int status) const {
  if (WIFSIGNALED(status))
    return {{}, nullptr, std::string("it was ended by signal ") + strsignal(WTERMSIG(status))};
  if (WEXITSTATUS(status) != 0)
    return {{}, nullptr, "its exit status was " + std::to_string(WEXITSTATUS(status))};
  auto answer = parseAnswer(readAll(output_));
  if (!answer) return {{}, nullptr, "what it printed is no answer"};
  auto picture = loadPicture(folder_ + "/picture.png", question_.width, question_.height);
  if (!picture) return {{}, nullptr, "it wrote no picture of the right size"};
  return {std::move(answer), std::move(picture), ""};
}

void WidgetProgram::clear() {
  if (output_ >= 0) close(output_);
  output_ = -1;
  std::error_code ignored;
  if (!folder_.empty()) fs::remove_all(folder_, ignored);
  folder_.clear();
}

void WidgetProgram::kill() const {
  if (process_ != 0) ::kill(-process_, SIGKILL);
}

void WidgetProgram::end() {
  if (watch_ != 0) g_source_remove(watch_);
  watch_ = 0;
  if (process_ != 0) {
    kill();
    waitpid(process_, nullptr, 0);
    process_ = 0;
  }
  finished_ = nullptr;
  clear();
}

std::optional<std::string> findWidgetProgram() {
  std::error_code ignored;
  const auto beside = fs::read_symlink("/proc/self/exe", ignored).parent_path() / "velmora-widget";
  if (access(beside.c_str(), X_OK) == 0) return beside.string();
  gchar* found = g_find_program_in_path("velmora-widget");
  if (found == nullptr) return std::nullopt;
  std::string file = found;
  g_free(found);
  return file;
}

}  // namespace desktop
