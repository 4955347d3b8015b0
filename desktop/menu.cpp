#include "desktop/menu.hpp"

namespace desktop {

MenuChoice menuChoice(const std::string& output) {
  const auto line = output.substr(0, output.find('\n'));
  const auto space = line.find(' ');
  if (space == std::string::npos) return {line, ""};
  return {line.substr(0, space), line.substr(space + 1)};
}

void Menu::open(const MenuSpot& spot, const Placement& placement, const char* displayKind,
                std::function<void(const MenuChoice&)> chosen) {
  process_.end();
  std::vector<std::string> words{findProgram("../libexec", "velmora-desktop-menu"),
                                 "--display-kind",
                                 displayKind,
                                 "--at",
                                 std::to_string(spot.at.x),
                                 std::to_string(spot.at.y),
                                 "--family",
                                 placement.family};
  if (!spot.output.empty()) words.insert(words.end(), {"--output", spot.output});
  if (!placement.moved) words.insert(words.end(), {"--corner", cornerName(placement.corner)});
  process_.start(std::move(words), [chosen = std::move(chosen)](const ProcessEnd& end) {
    if (!end.failure.empty())
      g_printerr("velmora-desktop: the menu (velmora-desktop-menu) failed: %s\n",
                 end.failure.c_str());
    if (const auto choice = menuChoice(end.output); !choice.command.empty()) chosen(choice);
  });
}

}  // namespace desktop
