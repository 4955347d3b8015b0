#include "companion/sign_in_command.hpp"

#include <glib-unix.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <iostream>
#include <stdexcept>

#include "companion/browser.hpp"
#include "companion/sign_in.hpp"
#include "platform/foundation/background_tasks.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/raii.hpp"
#include "platform/foundation/standard_streams.hpp"

namespace companion {

namespace {

using MainLoop = platform::Owned<GMainLoop, g_main_loop_unref>;

/// Returns whether the user can get to the address. `print` shows it later, should the browser
/// turn out to fail.
bool showAddress(const CommandLine& line, const std::string& address,
                 const std::function<void()>& print) {
  if (line.printAddress || !openInBrowser(address, print)) return platform::printLine(address);
  if (::isatty(STDERR_FILENO) != 0)
    std::cerr << platform::localizedString("Go on in the browser. Velmora waits for it.")
              << std::endl;
  return true;
}

gboolean cancel(gpointer signIn) {
  static_cast<SignIn*>(signIn)->cancel();
  return G_SOURCE_CONTINUE;
}

}  // namespace

std::string signInFromTerminal(const CommandLine& line) {
  const MainLoop loop(g_main_loop_new(nullptr, FALSE));
  SignInOutcome outcome;
  SignInEvents events;
  bool isShown = true;
  events.waiting = [&](const std::string& address) {
    isShown = showAddress(line, address, [address] { platform::printLine(address); });
    if (!isShown) g_main_loop_quit(loop.get());
  };
  events.finished = [&](const SignInOutcome& end) {
    outcome = end;
    g_main_loop_quit(loop.get());
  };
  {
    SignIn signIn(line.timeout, std::move(events));
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) g_unix_signal_add(signal, cancel, &signIn);
    g_main_loop_run(loop.get());
    for (int i = 0; i < 3; ++i) g_source_remove_by_user_data(&signIn);
  }
  platform::drainBackgroundTasks();
  if (!isShown) throw std::runtime_error("cannot write to standard output");
  if (outcome.error) throw SignInError(*outcome.error);
  return outcome.account.empty() ? platform::localizedString("Signed in.")
                                 : platform::localizedFormat("Signed in as %s.", {outcome.account});
}

}  // namespace companion
