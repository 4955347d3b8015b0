#include "desktop/menu/menu_call.hpp"

#include <CLI/CLI.hpp>
#include <glib.h>

#include <algorithm>

namespace desktop::menu {

std::optional<int> parseCall(int argumentCount, char** arguments, Call& call) {
  CLI::App app("The menu of velmora-desktop, which starts this program.", "velmora-desktop-menu");
  app.add_option("--display-kind", call.displayKind, "x11 or wayland")
      ->check(CLI::IsMember({"x11", "wayland"}));
  app.add_option("--at", call.at, "where its corner is, X and Y")->expected(2);
  app.add_option("--output", call.output, "the Wayland output's place: X, Y, width and height")
      ->expected(4);
  app.add_option("--family", call.family, "the widget's size");
  app.add_option("--corner", call.corner, "the widget's corner");
  app.add_option("--amounts", call.amounts, "offers to show or hide them; which it is now")
      ->check(CLI::IsMember({"show", "hide"}));
  try {
    app.parse(argumentCount, arguments);
  } catch (const CLI::CallForHelp&) {
    g_print("%s", app.help().c_str());
    return 0;
  } catch (const CLI::ParseError& error) {
    std::string problem = error.what();
    std::ranges::replace(problem, '\n', ' ');
    g_printerr("velmora-desktop-menu: %s\n", problem.c_str());
    return 2;
  }
  return std::nullopt;
}

}  // namespace desktop::menu
