#include "desktop/menu.hpp"

#include "desktop/complain.hpp"

namespace desktop {

namespace {

constexpr std::chrono::minutes deadline{10};  // of a menu that nobody closes

}  // namespace

MenuChoice menuChoice(const std::string& output) {
  const auto line = output.substr(0, output.find('\n'));
  const auto space = line.find(' ');
  if (space == std::string::npos) return {line, ""};
  return {line.substr(0, space), line.substr(space + 1)};
}

void Menu::open(const MenuSpot& spot, const Placement& placement, const char* displayKind,
                std::function<void(const MenuChoice&)> chosen) {
  process_.end();
  std::vector<std::string> words{platform::findProgram("velmora-desktop-menu"),
                                 "--display-kind",
                                 displayKind,
                                 "--at",
                                 std::to_string(spot.at.x),
                                 std::to_string(spot.at.y),
                                 "--family",
                                 platform::familyShortName(placement.family),
                                 "--amounts",
                                 placement.hidesAmounts ? "hide" : "show"};
  if (const auto [x, y, width, height] = spot.output; width > 0)
    words.insert(words.end(), {"--output", std::to_string(x), std::to_string(y),
                               std::to_string(width), std::to_string(height)});
  if (!placement.moved) words.insert(words.end(), {"--corner", cornerName(placement.corner)});
  process_.start(std::move(words), deadline,
                 [chosen = std::move(chosen)](const platform::ProcessEnd& end) {
                   if (!end.failure.empty())
                     complain("the menu (velmora-desktop-menu) failed: " + end.failure);
                   const auto choice = menuChoice(end.output);
                   if (!choice.command.empty()) chosen(choice);
                 });
}

}  // namespace desktop
