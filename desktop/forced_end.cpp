#include "desktop/forced_end.hpp"

#include <glib-unix.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <cstring>

#include "platform/processes/guarded.hpp"

namespace desktop {

namespace {

constexpr unsigned patience = 2;  // seconds

// What the handlers may touch.
int signalled = -1;  // eventfd
std::atomic<bool> isEnding = false;
std::atomic<const char*> lastWords = nullptr;

std::function<void()>& quitFunction() {
  static std::function<void()> function;
  return function;
}

void handleEnding(int) {
  isEnding = true;
  const std::uint64_t one = 1;
  alarm(patience);
  if (write(signalled, &one, sizeof one) < 0) _exit(1);
}

void handleAlarm(int) {
  const char* line = lastWords;
  // Whether it could be said makes no difference any more.
  if (line != nullptr && write(STDERR_FILENO, line, std::strlen(line)) < 0) _exit(1);
  _exit(1);
}

void handle(int signal, void (*handler)(int)) {
  struct sigaction action{};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigaction(signal, &action, nullptr);
}

gboolean quitNow(gint descriptor, GIOCondition, gpointer) {
  std::uint64_t count = 0;
  if (read(descriptor, &count, sizeof count) > 0) platform::guarded(quitFunction());
  return G_SOURCE_CONTINUE;
}

}  // namespace

void endOnSignals(std::function<void()> quit) {
  quitFunction() = std::move(quit);
  signalled = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  g_unix_fd_add(signalled, G_IO_IN, quitNow, nullptr);
  handle(SIGALRM, handleAlarm);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) handle(signal, handleEnding);
}

ForcedEnd::ForcedEnd(unsigned seconds, const char* line) {
  lastWords = line;
  handle(SIGALRM, handleAlarm);
  alarm(seconds);
}

ForcedEnd::~ForcedEnd() {
  alarm(isEnding ? patience : 0);
  lastWords = nullptr;
}

}  // namespace desktop
