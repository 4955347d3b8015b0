#include <glib-unix.h>
#include <gtk/gtk.h>
#include <libintl.h>

#include <clocale>
#include <memory>

#include "desktop/command_line.hpp"
#include "desktop/host.hpp"
#include "desktop/screen.hpp"
#include "platform/foundation/raii.hpp"

// One process of this program shows the widget; a further call hands its options to that one and
// ends.

namespace {

using namespace desktop;

struct Session {
  GApplication* application = nullptr;
  std::unique_ptr<Host> host;
};

int complain(const std::string& message, int status) {
  g_printerr("velmora-desktop: %s\n", message.c_str());
  return status;
}

std::vector<std::string> words(char** arguments, int count) {
  return {arguments + 1, arguments + count};
}

bool isProgram(const std::string& file) {
  return g_file_test(file.c_str(), G_FILE_TEST_IS_REGULAR) != FALSE &&
         g_file_test(file.c_str(), G_FILE_TEST_IS_EXECUTABLE) != FALSE;
}

gboolean quit(gpointer data) {
  auto* session = static_cast<Session*>(data);
  g_application_quit(session->application);
  return G_SOURCE_CONTINUE;
}

/// Starts showing the widget. Returns the exit status, 0 when it is being shown.
int start(Session& session, const CommandLine& line) {
  const auto program = line.widget ? line.widget : findWidgetProgram();
  if (!program)
    return complain("no velmora-widget beside this program or on PATH; name one with --widget", 1);
  session.host = std::make_unique<Host>(line, *program, [&session] { quit(&session); });
  if (const auto problem = openDisplay()) {
    session.host.reset();
    return complain(*problem, 1);
  }
  session.host->openWindow();
  g_application_hold(session.application);
  return 0;
}

/// A call's options, of this process or of a further one.
int handleCommandLine(GApplication*, GApplicationCommandLine* call, gpointer data) {
  auto& session = *static_cast<Session*>(data);
  int count = 0;
  char** arguments = g_application_command_line_get_arguments(call, &count);
  const char* folder = g_application_command_line_get_cwd(call);
  CommandLine line;
  const auto early =
      parseCommandLine(words(arguments, count), folder == nullptr ? "/" : folder, line);
  g_strfreev(arguments);
  if (early) return early->status;  // said by the calling process already
  if (line.widget && !isProgram(*line.widget)) {
    g_application_command_line_printerr(
        call, "velmora-desktop: '%s' is no program; name another with --widget\n",
        line.widget->c_str());
    return 1;
  }
  if (!session.host) return start(session, line);
  session.host->apply(line);
  return 0;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  setlocale(LC_ALL, "");
  CommandLine line;
  if (const auto early = parseCommandLine(words(arguments, argumentCount), "/", line)) {
    if (early->status != 0) return complain(early->text, early->status);
    g_print("%s", early->text.c_str());
    return 0;
  }
  g_set_prgname("velmora-desktop");
  g_set_application_name("Velmora");
  Session session;
  const platform::Owned<GApplication, g_object_unref> application(
      g_application_new("com.brenvik.velmora.Desktop", G_APPLICATION_HANDLES_COMMAND_LINE));
  session.application = application.get();
  g_signal_connect(application.get(), "command-line", G_CALLBACK(handleCommandLine), &session);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) g_unix_signal_add(signal, quit, &session);
  const int status = g_application_run(application.get(), argumentCount, arguments);
  session.host.reset();
  return status;
}
