#include <adwaita.h>
#include <glib-unix.h>

#include <cstdlib>
#include <memory>

#include "companion/window/appearance.hpp"
#include "companion/window/main_window.hpp"
#include "companion/window/session.hpp"
#include "companion/window/shortcuts.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/standard_streams.hpp"

namespace {

using companion::window::MainWindow;
using companion::window::Session;

constexpr const char* identifier = "com.brenvik.velmora";
constexpr const char* rendererVariable = "GSK_RENDERER";

struct Program {
  Session session;
  std::unique_ptr<MainWindow> window;
  bool choosesRenderer = false;
};

void startUp(GtkApplication* application, gpointer) {
  companion::window::prepareAppearance();
  companion::window::bindShortcuts(application);
}

void activate(GtkApplication* application, gpointer data) {
  auto* program = static_cast<Program*>(data);
  if (program->window) return program->window->present();
  program->window = std::make_unique<MainWindow>(application, program->session,
                                                 [program] { program->window.reset(); });
  program->window->present();
  // It was for this program alone, not for the browser that it starts.
  if (std::exchange(program->choosesRenderer, false)) g_unsetenv(rendererVariable);
  program->session.load();
}

gboolean endOnSignal(gpointer data) {
  auto* program = static_cast<Program*>(data);
  if (program->window) program->window->close();
  return G_SOURCE_CONTINUE;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  platform::occupyStandardStreams();
  platform::surviveFailedWrites();
  platform::loadStringTables();
  g_set_prgname(identifier);
  g_set_application_name("Velmora");
  if (gtk_init_check() == FALSE) {
    g_printerr("velmora: %s\n",
               platform::localizedString(
                   "No display can be opened; see \"velmora --help\" for what the terminal offers.")
                   .c_str());
    return 1;
  }
  Program program;
  // Lists and labels need no graphics driver: without one the program takes half the memory.
  program.choosesRenderer = g_getenv(rendererVariable) == nullptr;
  if (program.choosesRenderer) g_setenv(rendererVariable, "cairo", TRUE);
  auto* application = adw_application_new(identifier, static_cast<GApplicationFlags>(0));
  g_signal_connect(application, "startup", G_CALLBACK(startUp), nullptr);
  g_signal_connect(application, "activate", G_CALLBACK(activate), &program);
  for (const int signal : {SIGTERM, SIGINT}) g_unix_signal_add(signal, endOnSignal, &program);
  const int status = g_application_run(G_APPLICATION(application), argumentCount, arguments);
  // What is only being read beside need not be waited for.
  std::_Exit(status);
}
