#include "companion/window/child.hpp"

#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>

#include "companion/beside.hpp"

namespace companion::window {

namespace {

using Launcher = Reference<GSubprocessLauncher>;
using Ended = std::function<void(bool)>;

constexpr auto quiet = static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_SILENCE |
                                                     G_SUBPROCESS_FLAGS_STDERR_SILENCE);

GSubprocess* spawn(GSubprocessLauncher* launcher, const std::vector<std::string>& command) {
  std::vector<const char*> arguments;
  for (const auto& argument : command) arguments.push_back(argument.c_str());
  arguments.push_back(nullptr);
  return g_subprocess_launcher_spawnv(launcher, arguments.data(), nullptr);
}

void whenEnded(GSubprocess* process, Ended ended) {
  g_subprocess_wait_async(
      process, nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Ended> handler(static_cast<Ended*>(data));
        g_subprocess_wait_finish(G_SUBPROCESS(source), result, nullptr);
        (*handler)(g_subprocess_get_if_exited(G_SUBPROCESS(source)) &&
                   g_subprocess_get_exit_status(G_SUBPROCESS(source)) == 0);
      },
      new Ended(std::move(ended)));
}

}  // namespace

struct Child::Run {
  Reference<GSubprocess> process;
  guint timer = 0;
  Ended done;

  void end() {
    done = nullptr;
    if (timer != 0) g_source_remove(timer);
    timer = 0;
    if (process) g_subprocess_force_exit(process.get());
  }
};

Child::Child(const std::vector<std::string>& command, std::chrono::seconds deadline, Ended done)
    : run_(std::make_shared<Run>()) {
  const Launcher launcher(g_subprocess_launcher_new(quiet));
  // GLib sends signals from a thread of its own, which may not come to it before this program ends.
  g_subprocess_launcher_set_child_setup(
      launcher.get(), [](gpointer) { prctl(PR_SET_PDEATHSIG, SIGKILL); }, nullptr, nullptr);
  run_->done = std::move(done);
  run_->process.reset(spawn(launcher.get(), command));
  const auto finish = [run = run_](bool well) {
    const auto handler = std::move(run->done);
    run->process.reset();
    run->end();
    if (handler) handler(well);
  };
  if (!run_->process) {
    runSoon([finish] { finish(false); });
    return;
  }
  run_->timer = g_timeout_add_seconds(
      static_cast<guint>(deadline.count()),
      [](gpointer data) -> gboolean {
        auto* run = static_cast<Run*>(data);
        run->timer = 0;
        g_subprocess_force_exit(run->process.get());
        return G_SOURCE_REMOVE;
      },
      run_.get());
  whenEnded(run_->process.get(), finish);
}

Child::~Child() { run_->end(); }

void startDetached(const std::vector<std::string>& command, std::function<void()> ended) {
  const Launcher launcher(g_subprocess_launcher_new(quiet));
  // A session of its own: a terminal that ends this program leaves that one alone.
  g_subprocess_launcher_set_child_setup(
      launcher.get(), [](gpointer) { setsid(); }, nullptr, nullptr);
  const Reference<GSubprocess> process(spawn(launcher.get(), command));
  if (process) return whenEnded(process.get(), [ended = std::move(ended)](bool) { ended(); });
  runSoon(std::move(ended));
}

}  // namespace companion::window
