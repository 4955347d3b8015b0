#include "desktop/command_line.hpp"

#include <CLI/CLI.hpp>

#include <filesystem>

namespace desktop {

namespace {

std::vector<std::string> familyNames() {
  std::vector<std::string> names;
  for (const auto family : offeredFamilies) names.push_back(platform::familyShortName(family));
  return names;
}

std::string checkMonitor(const std::string& name) {
  return name.size() <= longestMonitorName ? "" : "no monitor has a name as long as that";
}

}  // namespace

std::optional<EarlyExit> parseCommandLine(const std::vector<std::string>& arguments,
                                          const std::string& folder, CommandLine& line) {
  CLI::App app(
      "Shows your AdSense earnings on the desktop. A second call changes the widget that "
      "is already there.",
      "velmora-desktop");
  app.set_version_flag("--version", "velmora-desktop " VELMORA_VERSION);
  std::string corner;
  std::string family;
  std::string amounts;
  app.add_option("--widget", line.widget,
                 "the widget program (default: velmora-widget beside "
                 "this program, else on PATH); at the start only");
  app.add_option("--family", family, "size: small, medium or large (default small)")
      ->check(CLI::IsMember(familyNames()));
  app.add_option("--corner", corner, "top-left, top-right (default), bottom-left, bottom-right")
      ->check(CLI::IsMember({"top-left", "top-right", "bottom-left", "bottom-right"}));
  app.add_option("--margin", line.margin, "points from the edges, 0 to 2000 (default 24)")
      ->check(CLI::Range(0, largestMargin));
  app.add_option("--monitor", line.monitor, "a monitor's number from 0, or its name")
      ->check(CLI::Validator([](std::string& name) { return checkMonitor(name); }, ""));
  app.add_option("--amounts", amounts, "show (default), or hide them from who passes the screen")
      ->check(CLI::IsMember({"show", "hide"}));
  app.add_flag("--refresh", line.refresh, "have the running widget fetch fresh figures now");
  app.add_flag("--quit", line.quit, "end the running widget");
  try {
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::CallForHelp&) {
    return EarlyExit{0, app.help()};
  } catch (const CLI::CallForVersion& version) {
    return EarlyExit{0, std::string(version.what()) + "\n"};
  } catch (const CLI::ParseError& error) {
    return EarlyExit{2, error.what()};
  }
  if (!family.empty()) line.family = offeredFamily(family);
  if (!amounts.empty()) line.hidesAmounts = amounts == "hide";
  if (!corner.empty()) line.corner = cornerFromName(corner);
  if (line.widget) {
    const auto file = std::filesystem::path(folder) / *line.widget;
    line.widget = file.lexically_normal().string();
  }
  return std::nullopt;
}

bool wantsRunningHost(const CommandLine& line) { return line.refresh || line.quit; }

Placement applied(const CommandLine& line, Placement placement) {
  if (line.family) placement.family = *line.family;
  if (line.corner) placement.corner = *line.corner;
  if (line.margin) placement.margin = *line.margin;
  if (line.monitor) placement.monitor = *line.monitor;
  if (line.hidesAmounts) placement.hidesAmounts = *line.hidesAmounts;
  // A corner that was asked for undoes what was dragged.
  if (line.corner || line.margin || line.monitor) placement.moved.reset();
  return placement;
}

}  // namespace desktop
