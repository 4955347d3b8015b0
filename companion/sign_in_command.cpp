#include "companion/sign_in_command.hpp"

#include <glib-unix.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <utility>

#include "companion/sign_in.hpp"
#include "platform/foundation/background_tasks.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/raii.hpp"
#include "platform/foundation/standard_streams.hpp"
#include "platform/processes/browser.hpp"

namespace companion {

namespace {

using MainLoop = platform::Owned<GMainLoop, g_main_loop_unref>;

/// Returns whether the user can get to the address. `print` shows it later, should the browser
/// turn out to fail.
bool showAddress(const CommandLine& line, const std::string& address,
                 const std::function<void()>& print) {
  if (line.printAddress || !platform::openInBrowser(address, print))
    return platform::printLine(address);
  if (::isatty(STDERR_FILENO) != 0)
    std::cerr << platform::localizedString("Go on in the browser. Velmora waits for it.")
              << std::endl;
  return true;
}

/// What signals do to a sign-in. Once the browser's answer has come, the first lets it be finished;
/// the second ends the program, which may be waiting for a provider that is silent.
struct Interruption {
  SignIn* signIn = nullptr;
  bool isAnswered = false;
  bool isKnown = false;
};

[[noreturn]] void breakOff() {
  std::cerr << "velmora: "
            << platform::localizedString(
                   "The sign-in was broken off. \"velmora status\" tells "
                   "whether it had succeeded already.")
            << std::endl;
  std::_Exit(EXIT_FAILURE);
}

gboolean interrupt(gpointer data) {
  auto& interruption = *static_cast<Interruption*>(data);
  if (!interruption.isAnswered) {
    interruption.signIn->cancel();
  } else if (std::exchange(interruption.isKnown, true)) {
    breakOff();
  } else if (::isatty(STDERR_FILENO) != 0) {
    std::cerr << platform::localizedString(
                     "The sign-in is being finished. Press Ctrl+C again to break it off.")
              << std::endl;
  }
  return G_SOURCE_CONTINUE;
}

}  // namespace

std::string signInFromTerminal(const CommandLine& line) {
  const MainLoop loop(g_main_loop_new(nullptr, FALSE));
  SignInOutcome outcome;
  SignInEvents events;
  Interruption interruption;
  bool isShown = true;
  events.waiting = [&](const std::string& address) {
    isShown = showAddress(line, address, [address] { platform::printLine(address); });
    if (!isShown) g_main_loop_quit(loop.get());
  };
  events.answered = [&interruption] { interruption.isAnswered = true; };
  events.finished = [&](const SignInOutcome& end) {
    outcome = end;
    g_main_loop_quit(loop.get());
  };
  {
    SignIn signIn(line.timeout, std::move(events));
    interruption.signIn = &signIn;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
      g_unix_signal_add(signal, interrupt, &interruption);
    g_main_loop_run(loop.get());
    for (int i = 0; i < 3; ++i) g_source_remove_by_user_data(&interruption);
  }
  platform::drainBackgroundTasks();
  if (!isShown) throw std::runtime_error("cannot write to standard output");
  if (outcome.error) throw SignInError(*outcome.error);
  return outcome.account.empty() ? platform::localizedString("Signed in.")
                                 : platform::localizedFormat("Signed in as %s.", {outcome.account});
}

}  // namespace companion
