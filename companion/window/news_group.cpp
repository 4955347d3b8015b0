#include "companion/window/news_group.hpp"

#include "companion/main_loop_tasks.hpp"
#include "companion/news/choices.hpp"
#include "companion/news/kind.hpp"
#include "companion/window/application_hold.hpp"
#include "platform/foundation/files.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedFormat;
using platform::localizedString;

NewsGroup::NewsGroup() : group_(preferencesGroup(localizedString("News"), "")) {
  describe("");
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

/// Stored at once; a switch that could not be stored goes back, and the group says why.
void NewsGroup::choose(const std::string& kind, bool isOn) {
  auto problem = std::make_shared<std::string>();
  runBeside(
      [kind, isOn, problem] {
        try {
          news::storeChoices({{kind, isOn}});
        } catch (const platform::FileError& error) {
          *problem = localizedFormat("This choice could not be stored: %s", {error.what()});
        }
      },
      [this, problem, life = std::weak_ptr<bool>(life_),
       hold = std::make_shared<ApplicationHold>()] {
        if (life.expired()) return;
        describe(*problem);
        update();
      });
}

void NewsGroup::describe(const std::string& problem) const {
  const auto text =
      problem.empty() ? localizedString("What the widget tells you in a notification.") : problem;
  adw_preferences_group_set_description(group_, escaped(text).c_str());
}

}  // namespace companion::window
