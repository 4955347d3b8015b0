#include "platform/foundation/library_logs.hpp"

#include <glib.h>
#include <unistd.h>

#include <iostream>

#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/text.hpp"

namespace platform {

namespace {

void endWith(const char* program, const char* message) {
  const auto line = localizedFormat(
      "A library cannot go on. If many programs are open, close some and try again. (%s)",
      {std::string(message == nullptr ? "" : message)});
  std::cerr << program << ": " << oneLine(line) << std::endl;
  ::_exit(1);  // other threads are at work: nothing is taken down under them
}

}  // namespace

void silenceLibraryLogs(const char* program) {
  g_log_set_default_handler(
      [](const gchar*, GLogLevelFlags level, const gchar* message, gpointer name) {
        if ((level & G_LOG_FLAG_FATAL) != 0) endWith(static_cast<const char*>(name), message);
      },
      const_cast<char*>(program));
}

}  // namespace platform
