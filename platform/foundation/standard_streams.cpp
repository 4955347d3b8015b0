#include "platform/foundation/standard_streams.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

namespace platform {

void occupyStandardStreams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    // The lowest free number is taken. Open for reading alone, it refuses what is written.
    if (::fcntl(stream, F_GETFD) < 0) ::open("/dev/null", O_RDONLY);
  }
}

void surviveFailedWrites() {
  // A handler, unlike SIG_IGN, is not inherited by what is executed.
  for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, [](int) {});
}

bool printLine(const std::string& line) {
  const std::string text = line + "\n";
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() &&
         std::fflush(stdout) == 0;
}

}  // namespace platform
