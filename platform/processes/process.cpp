#include "platform/processes/process.hpp"

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
#include <memory>

#include "platform/foundation/glib.hpp"
#include "platform/processes/guarded.hpp"

namespace platform {

namespace {

constexpr rlim_t largestFile = 64U << 20U;
constexpr std::size_t largestOutput = 1U << 20U;
constexpr std::size_t largestComplaint = 4U << 10U;

/// In the new process, before the program starts.
void prepareChild(gpointer) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);  // a program that dies takes it along
  const rlimit size{largestFile, largestFile};
  setrlimit(RLIMIT_FSIZE, &size);  // floods end it
  setpgid(0, 0);                   // with all that it starts
}

std::string readAll(int descriptor, std::size_t largest) {
  struct stat status{};
  if (fstat(descriptor, &status) != 0) return "";
  std::string text(std::min(largest, static_cast<std::size_t>(status.st_size)), '\0');
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

Descriptor openNothing() { return Descriptor(open("/dev/null", O_RDWR | O_CLOEXEC)); }

Descriptor openMemory() { return Descriptor(memfd_create("velmora output", MFD_CLOEXEC)); }

/// Ours, but for what lets a window come to the front; toolkits read the one or the other.
GWords surroundingsWith(const std::string& startup) {
  char** list = g_get_environ();
  for (const char* name : {"DESKTOP_STARTUP_ID", "XDG_ACTIVATION_TOKEN"})
    list = startup.empty() ? g_environ_unsetenv(list, name)
                           : g_environ_setenv(list, name, startup.c_str(), TRUE);
  return GWords(list);
}

/// What is waited for of a program that lives on without us.
struct Detached {
  Descriptor complaint;
  std::function<void(const ProcessEnd&)> ended;
};

void detachedEnded(GPid, int status, gpointer data) {
  const auto* program = static_cast<Detached*>(data);
  guarded([&] {
    program->ended({failureOf(status), "", readAll(program->complaint.get(), largestComplaint)});
  });
}

}  // namespace

void Process::start(std::vector<std::string> words, std::chrono::milliseconds deadline,
                    std::function<void(const ProcessEnd&)> finished) {
  finished_ = std::move(finished);
  output_ = openMemory();
  complaint_ = openMemory();
  const auto nothing = openNothing();
  if (output_ && complaint_ && nothing)
    g_spawn_async_with_fds(nullptr, argumentList(words).data(), nullptr, G_SPAWN_DO_NOT_REAP_CHILD,
                           prepareChild, nullptr, &id_, nothing.get(), output_.get(),
                           complaint_.get(), nullptr);
  // A failure too is told from the main loop.
  source_ = id_ != 0 ? g_child_watch_add(id_, exited, this) : g_idle_add(failedToStart, this);
  timer_ = g_timeout_add(static_cast<unsigned>(deadline.count()), tookTooLong, this);
}

int Process::failedToStart(void* process) {
  guarded([&] { static_cast<Process*>(process)->deliver({"it could not be started", "", ""}); });
  return G_SOURCE_REMOVE;
}

void Process::exited(pid_t, int status, void* process) {
  guarded([&] {
    auto* self = static_cast<Process*>(process);
    ::kill(-self->id_, SIGKILL);  // what it may have left running
    self->deliver({failureOf(status), readAll(self->output_.get(), largestOutput),
                   readAll(self->complaint_.get(), largestComplaint)});
  });
}

/// Whether it dies or not.
int Process::tookTooLong(void* process) {
  guarded([&] {
    auto* self = static_cast<Process*>(process);
    self->timer_ = 0;
    self->kill();
    g_source_remove(self->source_);
    if (self->id_ != 0) g_child_watch_add(self->id_, reaped, nullptr);
    self->deliver({"it took too long", "", ""});
  });
  return G_SOURCE_REMOVE;
}

void Process::deliver(const ProcessEnd& end) {
  const auto finished = std::move(finished_);
  forget();
  finished(end);
}

void Process::forget() {
  if (timer_ != 0) g_source_remove(timer_);
  timer_ = 0;
  source_ = 0;
  id_ = 0;
  output_ = Descriptor();
  complaint_ = Descriptor();
  finished_ = nullptr;
}

/// A program may have left its group, and then dies by its own number alone.
void Process::kill() const {
  if (id_ == 0) return;
  ::kill(-id_, SIGKILL);
  ::kill(id_, SIGKILL);
}

void Process::end() {
  if (source_ != 0) g_source_remove(source_);
  kill();
  if (id_ != 0) g_child_watch_add(id_, reaped, nullptr);  // leaves no zombie, waits for nobody
  forget();
}

bool startDetached(std::vector<std::string> words, const std::string& startup,
                   std::function<void(const ProcessEnd&)> ended) {
  const auto nothing = openNothing();
  const auto complaint = ended ? openMemory() : openNothing();
  const auto inOwnSession = [](gpointer) { setsid(); };  // a terminal that goes leaves it alone
  const auto surroundings = surroundingsWith(startup);
  GPid id = 0;
  // One that is not watched is made nobody's child by GLib.
  const bool started =
      g_spawn_async_with_fds(nullptr, argumentList(words).data(), surroundings.get(),
                             ended ? G_SPAWN_DO_NOT_REAP_CHILD : G_SPAWN_DEFAULT, inOwnSession,
                             nullptr, &id, nothing.get(), nothing.get(), complaint.get(),
                             nullptr) != FALSE;
  if (!started || !ended) return started;
  auto program = std::make_unique<Detached>(
      Detached{Descriptor(fcntl(complaint.get(), F_DUPFD_CLOEXEC, 0)), std::move(ended)});
  g_child_watch_add_full(G_PRIORITY_DEFAULT, id, detachedEnded, program.release(),
                         [](gpointer data) { delete static_cast<Detached*>(data); });
  return true;
}

std::string installedFile(const std::string& name) {
  namespace fs = std::filesystem;
  std::error_code ignored;
  const auto folder = fs::read_symlink("/proc/self/exe", ignored).parent_path();
  // From `bin`, and from `libexec/velmora` beside it.
  for (const auto& place : {folder, folder / "../libexec/velmora", folder / "../../bin"}) {
    const auto file = (place / name).lexically_normal();
    if (fs::is_regular_file(file, ignored)) return file.string();
  }
  return "";
}

std::string findProgram(const std::string& name) {
  const auto installed = installedFile(name);
  if (!installed.empty() && access(installed.c_str(), X_OK) == 0) return installed;
  const GText found(g_find_program_in_path(name.c_str()));
  return found ? found.get() : "";
}

}  // namespace platform
