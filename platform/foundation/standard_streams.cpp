#include "platform/foundation/standard_streams.hpp"

#include <fcntl.h>
#include <unistd.h>

namespace platform {

void occupyStandardStreams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    // The lowest free number is taken. Open for reading alone, it refuses what is written.
    if (::fcntl(stream, F_GETFD) < 0) ::open("/dev/null", O_RDONLY);
  }
}

}  // namespace platform
