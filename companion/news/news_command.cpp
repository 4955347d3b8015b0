#include "companion/news/news_command.hpp"

#include <nlohmann/json.hpp>

#include "companion/news/choices.hpp"
#include "companion/news/news.hpp"
#include "platform/foundation/json.hpp"
#include "platform/foundation/standard_streams.hpp"

namespace companion::news {

namespace {

using platform::Json;

const char* nameOf(Urgency urgency) {
  switch (urgency) {
    case Urgency::low:
      return "low";
    case Urgency::critical:
      return "critical";
    case Urgency::normal:
      break;
  }
  return "normal";
}

bool print(const News& news) {
  auto list = Json::array();
  for (const auto& [kind, entry] : news.news)
    list.push_back({{"id", entry.id},
                    {"kind", kind},
                    {"title", entry.title},
                    {"body", entry.body},
                    {"urgency", nameOf(entry.urgency)}});
  return platform::printLine(platform::printJson({{"news", list}, {"over", news.over}}));
}

bool choose(const CommandLine& line) {
  Choices changed;
  for (const auto& kind : line.newsOn) changed[kind] = true;
  for (const auto& kind : line.newsOff) changed[kind] = false;
  storeChoices(changed);
  auto kinds = Json::object();
  for (const auto& kind : newsKinds()) kinds[kind.id] = kind.isOn;
  return platform::printLine(platform::printJson({{"kinds", kinds}}));
}

}  // namespace

bool runNewsCommand(const CommandLine& line) {
  if (!line.newsOn.empty() || !line.newsOff.empty()) return choose(line);
  return tellNews(!line.peek, print);
}

}  // namespace companion::news
