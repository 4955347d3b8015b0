#include <clocale>
#include <filesystem>
#include <memory>

#include "desktop/call_service.hpp"
#include "desktop/command_line.hpp"
#include "desktop/complain.hpp"
#include "desktop/forced_end.hpp"
#include "desktop/host.hpp"
#include "desktop/picture_folder.hpp"
#include "desktop/running_host.hpp"
#include "platform/foundation/glib.hpp"
#include "platform/foundation/standard_streams.hpp"
#include "platform/processes/guarded.hpp"
#include "platform/processes/process.hpp"

// One process of this program shows the widget: the one that owns its name on the session bus. A
// further call hands its options to that one and ends.

namespace {

using namespace desktop;

constexpr unsigned longestOpening = 20;  // seconds
constexpr unsigned busPatience = 5'000;  // milliseconds
constexpr int mostClaims = 5;
enum : std::uint32_t { doNotQueue = 4, isOwner = 1, isOwnerAlready = 4 };  // D-Bus, RequestName

struct Session {
  HostCall call;
  CommandLine line;
  platform::GLoop loop{g_main_loop_new(nullptr, FALSE)};
  platform::Reference<GCancellable> cancellable{g_cancellable_new()};
  platform::Reference<GDBusConnection> bus;
  std::unique_ptr<CallService> service;
  std::unique_ptr<Host> host;
  int claims = 0;
  int status = 0;

  void end(int exitStatus) {
    status = exitStatus;
    g_main_loop_quit(loop.get());
  }
  void fail(const std::string& problem) {
    complain(problem);
    end(1);
  }
};

bool isProgram(const std::string& file) {
  return g_file_test(file.c_str(), G_FILE_TEST_IS_REGULAR) != FALSE &&
         g_file_test(file.c_str(), G_FILE_TEST_IS_EXECUTABLE) != FALSE;
}

/// Shows the widget. Returns why not; empty when it is being shown.
std::string show(Session& session) {
  const auto& line = session.line;
  if (line.widget && !isProgram(*line.widget))
    return "'" + *line.widget + "' is no program; name another with --widget";
  const auto program = line.widget ? *line.widget : platform::findProgram("velmora-widget");
  if (program.empty())
    return "no velmora-widget beside this program or on PATH; name one with --widget";
  removeLeftPictureFolders();
  session.host = std::make_unique<Host>(line, program, session.bus.get(),
                                        [&session](int status) { session.end(status); });
  const ForcedEnd limit(longestOpening, "velmora-desktop: the display does not answer\n");
  try {
    session.host->openDisplay();
  } catch (const std::runtime_error& error) {
    session.host.reset();
    return error.what();
  }
  return "";
}

void becomeHost(Session& session) {
  if (wantsRunningHost(session.line))
    return session.line.quit ? session.end(0) : session.fail("no widget is running");
  if (const auto problem = show(session); !problem.empty()) session.fail(problem);
}

/// Does what a further call asks for.
HostAnswer answer(Session& session, const HostCall& call) {
  CommandLine line;
  // What is said of a wrong call, the calling process has said already.
  if (const auto early = parseCommandLine(call.words, call.folder, line))
    return {early->status, early->status == 0 ? "" : early->text};
  if (line.quit) {
    session.end(0);
    return {};
  }
  if (!session.host) return {1, "the widget is not shown yet"};
  if (line.widget) return {1, "--widget counts at the start only; quit the running widget first"};
  if (!line.refresh && isElsewhere(call.displays, ownDisplays(), session.host->displayKind()))
    return {1, "the widget is shown on another display of this session; quit it there first"};
  session.host->apply(line);
  return {};
}

void claimName(Session& session);

/// Nobody is there any more to hand the call to, or nobody was.
void handedOver(Session& session, const std::optional<HostAnswer>& answer) {
  if (!answer) return wantsRunningHost(session.line) ? becomeHost(session) : claimName(session);
  if (answer->status != 0) complain(answer->line);
  session.end(answer->status);
}

void handOver(Session& session) {
  callRunningHost(session.bus.get(), session.call, session.cancellable.get(),
                  [&session](const auto& answer) { handedOver(session, answer); });
}

void claimed(GObject* bus, GAsyncResult* result, gpointer data) {
  auto& session = *static_cast<Session*>(data);
  const platform::GValueTree reply(
      g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr));
  std::uint32_t outcome = isOwner;  // a bus that does not answer has no other host either
  if (reply) g_variant_get(reply.get(), "(u)", &outcome);
  platform::guarded([&] {
    if (outcome == isOwner || outcome == isOwnerAlready) return becomeHost(session);
    session.service.reset();
    handOver(session);
  });
}

/// The calls of others are taken from the moment at which the name is ours.
void claimName(Session& session) {
  if (++session.claims > mostClaims) return session.fail("the running widget does not answer");
  session.service = std::make_unique<CallService>(
      session.bus.get(), [&session](const HostCall& call) { return answer(session, call); });
  g_dbus_connection_call(session.bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                         "org.freedesktop.DBus", "RequestName",
                         g_variant_new("(su)", hostBusName, std::uint32_t{doNotQueue}),
                         G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, busPatience,
                         session.cancellable.get(), claimed, &session);
}

void busCame(GObject*, GAsyncResult* result, gpointer data) {
  auto& session = *static_cast<Session*>(data);
  session.bus.reset(g_bus_get_finish(result, nullptr));
  g_source_remove_by_user_data(session.cancellable.get());
  session.cancellable.reset(g_cancellable_new());
  platform::guarded([&] {
    if (!session.bus) return becomeHost(session);
    wantsRunningHost(session.line) ? handOver(session) : claimName(session);
  });
}

gboolean busIsSilent(gpointer cancellable) {
  g_cancellable_cancel(static_cast<GCancellable*>(cancellable));
  return G_SOURCE_CONTINUE;  // it is removed with the answer
}

int run(Session& session) {
  endOnSignals([&session] { session.end(0); });
  g_bus_get(G_BUS_TYPE_SESSION, session.cancellable.get(), busCame, &session);
  g_timeout_add(busPatience, busIsSilent, session.cancellable.get());
  g_main_loop_run(session.loop.get());
  g_cancellable_cancel(session.cancellable.get());
  session.host.reset();
  if (session.bus) {  // what was answered is still to be sent
    const ForcedEnd limit(2, "");
    g_dbus_connection_flush_sync(session.bus.get(), nullptr, nullptr);
  }
  return session.status;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  platform::occupyStandardStreams();
  platform::surviveFailedWrites();
  setlocale(LC_ALL, "");
  g_set_prgname("velmora-desktop");
  Session session;
  std::error_code ignored;
  session.call = {{arguments + (argumentCount > 0), arguments + argumentCount},
                  std::filesystem::current_path(ignored),
                  ownDisplays()};
  if (const auto early = parseCommandLine(session.call.words, session.call.folder, session.line)) {
    if (early->status == 0) return platform::printLine(early->text) ? 0 : 1;
    complain(early->text);
    return early->status;
  }
  return run(session);
}
