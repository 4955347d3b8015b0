#include <gio/gio.h>
#include <glib-unix.h>

#include <algorithm>
#include <clocale>
#include <memory>

#include "desktop/command_line.hpp"
#include "desktop/guarded.hpp"
#include "desktop/host.hpp"
#include "platform/foundation/raii.hpp"

// One process of this program shows the widget; a further call hands its options to that one and
// ends.

namespace {

using namespace desktop;

struct Session {
  GApplication* application = nullptr;
  std::unique_ptr<Host> host;
  int status = 0;
};

int complain(const std::string& message, int status) {
  g_printerr("velmora-desktop: %s\n", message.c_str());
  return status;
}

/// Without the program's own name, which a call by way of the bus may lack.
std::vector<std::string> words(char** arguments, int count) {
  return {arguments + std::min(count, 1), arguments + count};
}

bool isProgram(const std::string& file) {
  return g_file_test(file.c_str(), G_FILE_TEST_IS_REGULAR) != FALSE &&
         g_file_test(file.c_str(), G_FILE_TEST_IS_EXECUTABLE) != FALSE;
}

gboolean quit(gpointer data) {
  g_application_quit(static_cast<Session*>(data)->application);
  return G_SOURCE_CONTINUE;
}

/// Starts showing the widget. Returns why not; empty when it is being shown.
std::string start(Session& session, const CommandLine& line) {
  if (line.widget && !isProgram(*line.widget))
    return "'" + *line.widget + "' is no program; name another with --widget";
  const auto program = line.widget ? *line.widget : findProgram("", "velmora-widget");
  if (program.empty())
    return "no velmora-widget beside this program or on PATH; name one with --widget";
  session.host =
      std::make_unique<Host>(line, program, g_application_get_dbus_connection(session.application),
                             [&session](int status) {
                               session.status = status;
                               quit(&session);
                             });
  try {
    session.host->openDisplay();
  } catch (const std::runtime_error& error) {
    session.host.reset();
    return error.what();
  }
  g_application_hold(session.application);
  return "";
}

/// Does what a call asks for. Returns why not; empty when it is done.
std::string carryOut(Session& session, const CommandLine& line) {
  if (line.quit) {
    if (session.host) quit(&session);
    return "";
  }
  if (!session.host) return line.refresh ? "no widget is running" : start(session, line);
  if (line.widget) return "--widget counts at the start only; quit the running widget first";
  session.host->apply(line);
  return "";
}

/// A call's options, of this process or of a further one.
int handleCommandLine(GApplication*, GApplicationCommandLine* call, gpointer data) {
  int status = 1;
  guarded([&] {
    int count = 0;
    const platform::Owned<char*, g_strfreev> arguments(
        g_application_command_line_get_arguments(call, &count));
    const char* folder = g_application_command_line_get_cwd(call);
    CommandLine line;
    const auto early =
        parseCommandLine(words(arguments.get(), count), folder == nullptr ? "/" : folder, line);
    if (early) {
      status = early->status;  // said by the calling process already
      return;
    }
    const auto problem = carryOut(*static_cast<Session*>(data), line);
    status = problem.empty() ? 0 : 1;
    if (!problem.empty())
      g_application_command_line_printerr(call, "velmora-desktop: %s\n", problem.c_str());
  });
  return status;
}

/// Whoever activates the application wants the widget to be there, and it is.
void handleActivation(GApplication*, gpointer) {}

int run(Session& session, int argumentCount, char** arguments) {
  const platform::Owned<GApplication, g_object_unref> application(
      g_application_new("com.brenvik.velmora.Desktop", G_APPLICATION_HANDLES_COMMAND_LINE));
  session.application = application.get();
  g_signal_connect(application.get(), "command-line", G_CALLBACK(handleCommandLine), &session);
  g_signal_connect(application.get(), "activate", G_CALLBACK(handleActivation), nullptr);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) g_unix_signal_add(signal, quit, &session);
  const int status = g_application_run(application.get(), argumentCount, arguments);
  session.host.reset();
  return std::max(status, session.status);
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
  return run(session, argumentCount, arguments);
}
