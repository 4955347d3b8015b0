#include "companion/window/news_group.hpp"

#include "companion/main_loop_tasks.hpp"
#include "companion/news/choices.hpp"
#include "companion/news/kind.hpp"
#include "companion/window/application_hold.hpp"
#include "platform/foundation/files.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedString;

NewsGroup::NewsGroup()
    : group_(preferencesGroup(localizedString("News"),
                              localizedString("What the widget tells you in a notification."))) {
  for (const auto& kind : news::kinds()) {
    rows_.push_back({kind.id, kind.explanation,
                     std::make_unique<SwitchRow>(
                         kind.title, [this, id = kind.id](bool isOn) { choose(id, isOn); })});
    adw_preferences_group_add(group_, rows_.back().row->widget());
  }
  update();
}

void NewsGroup::show(const news::Choices& choices) {
  for (const auto& row : rows_) row.row->show(news::isOn(choices, row.kind), row.explanation);
}

void NewsGroup::update() {
  auto choices = std::make_shared<news::Choices>();
  runBeside([choices] { *choices = news::loadChoices(); },
            [this, choices, life = std::weak_ptr<bool>(life_)] {
              if (!life.expired()) show(*choices);
            });
}

/// Stored at once; a switch that could not be stored goes back.
void NewsGroup::choose(const std::string& kind, bool isOn) {
  runBeside(
      [kind, isOn] {
        try {
          news::storeChoices({{kind, isOn}});
        } catch (const platform::FileError&) {
          return;
        }
      },
      [this, life = std::weak_ptr<bool>(life_), hold = std::make_shared<ApplicationHold>()] {
        if (!life.expired()) update();
      });
}

}  // namespace companion::window
