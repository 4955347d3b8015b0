#include "desktop/process.hpp"

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "desktop/guarded.hpp"

namespace desktop {

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

std::string failureOf(int status) {
  if (WIFSIGNALED(status))
    return std::string("it was ended by signal ") + strsignal(WTERMSIG(status));
  if (WEXITSTATUS(status) != 0) return "its exit status was " + std::to_string(WEXITSTATUS(status));
  return "";
}

void reaped(pid_t, int, void*) {}

std::vector<char*> argumentList(std::vector<std::string>& words) {
  std::vector<char*> arguments;
  for (auto& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  return arguments;
}

platform::Descriptor openNothing() {
  return platform::Descriptor(open("/dev/null", O_RDWR | O_CLOEXEC));
}

}  // namespace

void Process::start(std::vector<std::string> words, std::function<void(ProcessEnd)> finished) {
  finished_ = std::move(finished);
  output_ = platform::Descriptor(memfd_create("velmora output", MFD_CLOEXEC));
  const auto nothing = openNothing();
  if (output_ && nothing) {
    g_spawn_async_with_fds(nullptr, argumentList(words).data(), nullptr, G_SPAWN_DO_NOT_REAP_CHILD,
                           prepareChild, nullptr, &id_, nothing.get(), output_.get(), nothing.get(),
                           nullptr);
  }
  // A failure too is told from the main loop.
  source_ = id_ != 0 ? g_child_watch_add(id_, exited, this) : g_idle_add(failedToStart, this);
}

gboolean Process::failedToStart(void* process) {
  guarded([&] { static_cast<Process*>(process)->deliver({"it could not be started", ""}); });
  return G_SOURCE_REMOVE;
}

void Process::exited(pid_t, int status, void* process) {
  guarded([&] {
    auto* self = static_cast<Process*>(process);
    ::kill(-self->id_, SIGKILL);  // what it may have left running
    self->deliver({failureOf(status), readAll(self->output_.get())});
  });
}

void Process::deliver(ProcessEnd end) {
  const auto finished = std::move(finished_);
  forget();
  finished(std::move(end));
}

void Process::forget() {
  source_ = 0;
  id_ = 0;
  output_ = platform::Descriptor();
  finished_ = nullptr;
}

/// A program may have left its group, and then dies by its own number alone.
void Process::kill() const {
  ::kill(-id_, SIGKILL);
  ::kill(id_, SIGKILL);
}

void Process::giveUp(const std::string& failure) {
  if (id_ == 0) return;
  kill();
  g_source_remove(source_);
  g_child_watch_add(id_, reaped, nullptr);
  deliver({failure, ""});
}

void Process::end() {
  if (source_ != 0) g_source_remove(source_);
  if (id_ != 0) {
    kill();
    // It is gone in no time, or cannot be killed at all.
    for (int i = 0; i < 100 && waitpid(id_, nullptr, WNOHANG) == 0; ++i) usleep(1000);
  }
  forget();
}

bool startDetached(const std::string& file, const std::string& startup) {
  using Words = platform::Owned<char*, g_strfreev>;
  Words surroundings(g_get_environ());
  // Toolkits read the one or the other.
  for (const char* name : {"DESKTOP_STARTUP_ID", "XDG_ACTIVATION_TOKEN"}) {
    char** list = surroundings.release();
    surroundings.reset(startup.empty() ? g_environ_unsetenv(list, name)
                                       : g_environ_setenv(list, name, startup.c_str(), TRUE));
  }
  std::vector<std::string> words{file};
  const auto nothing = openNothing();
  const auto inOwnSession = [](gpointer) { setsid(); };
  // Not watched: GLib lets it be nobody's child.
  return g_spawn_async_with_fds(nullptr, argumentList(words).data(), surroundings.get(),
                                G_SPAWN_DEFAULT, inOwnSession, nullptr, nullptr, nothing.get(),
                                nothing.get(), nothing.get(), nullptr) != FALSE;
}

std::string findProgram(const std::string& folder, const std::string& name) {
  namespace fs = std::filesystem;
  std::error_code ignored;
  const auto here = fs::read_symlink("/proc/self/exe", ignored).parent_path();
  const auto beside = (here / folder / name).lexically_normal();
  if (access(beside.c_str(), X_OK) == 0 && fs::is_regular_file(beside, ignored))
    return beside.string();
  const platform::Owned<char, g_free> found(g_find_program_in_path(name.c_str()));
  return found ? found.get() : "";
}

}  // namespace desktop
