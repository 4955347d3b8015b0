#include "desktop/news.hpp"

#include "platform/foundation/json.hpp"

namespace desktop {

namespace {

constexpr std::chrono::seconds deadline{30};
constexpr std::size_t mostAtOnce = 20;

std::uint8_t urgencyFrom(const std::string& name) {
  if (name == "low") return 0;
  return name == "critical" ? 2 : 1;
}

}  // namespace

NewsAnswer parseNews(const std::string& output) {
  const platform::JsonDecoder object(output);
  NewsAnswer answer;
  for (const auto& entry : object.at("news").array())
    answer.news.push_back({entry.at("id").string(), entry.at("title").string(),
                           entry.at("body").string(), urgencyFrom(entry.at("urgency").string())});
  for (const auto& id : object.at("over").array()) answer.over.push_back(id.string());
  return answer;
}

void News::ask(bool isConnected) {
  if (!isConnected) notifications_.closeAll();
  if (!process_.isRunning()) notifications_.whenThere([this] { run(); });
}

void News::run() {
  const auto program = platform::findProgram("velmora");
  if (program.empty() || process_.isRunning()) return;
  process_.start({program, "news"}, deadline,
                 [this](const platform::ProcessEnd& end) { tell(end); });
}

/// A companion that fails says nothing here: it says it in its window.
void News::tell(const platform::ProcessEnd& end) {
  if (!end.failure.empty()) return;
  NewsAnswer answer;
  try {
    answer = parseNews(end.output);
  } catch (const platform::JsonDecodingError&) {
    return;
  }
  for (const auto& id : answer.over) notifications_.close(id);
  if (answer.news.size() > mostAtOnce) answer.news.resize(mostAtOnce);
  for (const auto& entry : answer.news) notifications_.post(entry);
}

}  // namespace desktop
