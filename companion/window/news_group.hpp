#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "companion/window/switch_row.hpp"
#include "companion/window/timer.hpp"

namespace companion::window {

/// What the user wants to be told of, one switch a kind of news.
class NewsGroup {
 public:
  NewsGroup();
  NewsGroup(const NewsGroup&) = delete;
  NewsGroup& operator=(const NewsGroup&) = delete;

  [[nodiscard]] AdwPreferencesGroup* group() const { return group_; }
  /// Reads the choices again.
  void update();

 private:
  void choose(const std::string& kind, bool isOn);
  /// What the choices are for, or why the last one was not kept.
  void describe(const std::string& problem) const;
  void show(const std::map<std::string, bool>& choices);

  struct Row {
    std::string kind;
    std::string explanation;
    std::unique_ptr<SwitchRow> row;
  };

  AdwPreferencesGroup* group_;
  std::vector<Row> rows_;
  /// Gone with this, for what comes back later.
  std::shared_ptr<bool> life_ = std::make_shared<bool>(true);
};

}  // namespace companion::window
