#include "companion/news/memory.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace companion::news {

namespace {

using Json = nlohmann::ordered_json;
using platform::Instant;

constexpr int version = 1;

Json jsonForm(Instant instant) { return platform::unixSeconds(instant); }

Json jsonForm(const Told& told) {
  Json json{{"id", told.id}, {"kind", told.kind}, {"at", jsonForm(told.at)}};
  if (told.isQuiet) json["quiet"] = true;
  return json;
}

Json jsonForm(const Failure& failure) {
  return {{"kind", nameOf(failure.kind)},
          {"title", failure.title},
          {"advice", failure.advice},
          {"page", failure.page}};
}

Json jsonForm(const Answer& answer) {
  Json json{{"at", jsonForm(answer.at)}};
  if (answer.failure) json["failure"] = jsonForm(*answer.failure);
  return json;
}

Json jsonForm(const Asked& asked) {
  return {{"at", jsonForm(asked.at)}, {"answered", asked.isAnswered}};
}

Json jsonForm(const ServiceAlert& alert) {
  return {{"name", alert.name}, {"severity", alert.severity}, {"message", alert.message}};
}

Json jsonForm(const platform::DateComponents& date) {
  return {date.year.value_or(0), date.month.value_or(0), date.day.value_or(0)};
}

Json jsonForm(const PolicyIssue& issue) {
  Json json{{"name", issue.name}, {"action", issue.action}, {"place", issue.place}};
  if (issue.firstDetected) json["since"] = jsonForm(*issue.firstDetected);
  if (issue.escalates) json["from"] = jsonForm(*issue.escalates);
  return json;
}

template <class Value>
Json jsonForm(const std::vector<Value>& values) {
  auto list = Json::array();
  for (const auto& value : values) list.push_back(jsonForm(value));
  return list;
}

template <class Value>
void put(Json& json, const char* key, const std::optional<Value>& value) {
  if (value) json[key] = jsonForm(*value);
}

/// Reads the JSON form; whatever it does not hold throws nlohmann's exception.
struct Reader {
  Instant now;

  void read(const Json& json, Instant& instant) const {
    instant = std::min(platform::instantFromUnixSeconds(json.get<double>()), now);
  }

  void read(const Json& json, Told& told) const {
    told.id = json.at("id");
    told.kind = json.at("kind");
    read(json.at("at"), told.at);
    told.isQuiet = json.value("quiet", false);
  }

  void read(const Json& json, Failure& failure) const {
    failure.kind = failureKindNamed(json.at("kind").get<std::string>());
    failure.title = json.at("title");
    failure.advice = json.at("advice");
    failure.page = json.at("page");
  }

  void read(const Json& json, Answer& answer) const {
    read(json.at("at"), answer.at);
    read(json, "failure", answer.failure);
  }

  void read(const Json& json, Asked& asked) const {
    read(json.at("at"), asked.at);
    asked.isAnswered = json.at("answered");
  }

  void read(const Json& json, ServiceAlert& alert) const {
    alert = {json.at("name"), json.at("severity"), json.at("message")};
  }

  void read(const Json& json, platform::DateComponents& date) const {
    date = {json.at(0).get<std::int64_t>(), json.at(1).get<std::int64_t>(),
            json.at(2).get<std::int64_t>()};
  }

  void read(const Json& json, PolicyIssue& issue) const {
    issue.name = json.at("name");
    issue.action = json.at("action");
    issue.place = json.at("place");
    read(json, "since", issue.firstDetected);
    read(json, "from", issue.escalates);
  }

  template <class Value>
  void read(const Json& json, std::vector<Value>& values) const {
    for (const auto& element : json) read(element, values.emplace_back());
  }

  template <class Value>
  void read(const Json& json, const char* key, std::optional<Value>& value) const {
    if (json.contains(key)) read(json.at(key), value.emplace());
  }
};

Memory decode(const Json& json, Instant now) {
  if (json.at("version") != version) return {};
  const Reader reader{now};
  Memory memory;
  memory.isNew = json.value("new", false);
  reader.read(json.at("told"), memory.told);
  memory.language = json.at("language");
  memory.identity = json.at("identity");
  reader.read(json, "tokenAsked", memory.tokenAsked);
  reader.read(json, "reportAsked", memory.reportAsked);
  reader.read(json, "token", memory.token);
  reader.read(json, "report", memory.report);
  reader.read(json, "alertsAsked", memory.alertsAsked);
  reader.read(json, "policyAsked", memory.policyAsked);
  reader.read(json, "alerts", memory.alerts);
  reader.read(json, "policyIssues", memory.policyIssues);
  reader.read(json, "withoutFiguresSince", memory.withoutFiguresSince);
  reader.read(json, "futureFiguresSeen", memory.futureFiguresSeen);
  if (json.contains("futureFigures"))
    memory.futureFigures = platform::instantFromUnixSeconds(json.at("futureFigures"));
  return memory;
}

}  // namespace

std::string encodeMemory(const Memory& memory) {
  Json json{{"version", version},
            {"told", jsonForm(memory.told)},
            {"language", memory.language},
            {"identity", memory.identity}};
  if (memory.isNew) json["new"] = true;
  put(json, "tokenAsked", memory.tokenAsked);
  put(json, "reportAsked", memory.reportAsked);
  put(json, "token", memory.token);
  put(json, "report", memory.report);
  put(json, "alertsAsked", memory.alertsAsked);
  put(json, "policyAsked", memory.policyAsked);
  put(json, "alerts", memory.alerts);
  put(json, "policyIssues", memory.policyIssues);
  put(json, "withoutFiguresSince", memory.withoutFiguresSince);
  put(json, "futureFigures", memory.futureFigures);
  put(json, "futureFiguresSeen", memory.futureFiguresSeen);
  return platform::printJson(json);
}

Memory decodeMemory(const std::string& text, Instant now) {
  try {
    return decode(Json::parse(text), now);
  } catch (const nlohmann::json::exception&) {
    return {};
  }
}

void keepOnlyFor(Memory& memory, const std::string& identity) {
  if (memory.identity == identity) return;
  Memory fresh;
  fresh.isNew = memory.isNew;
  fresh.told = std::move(memory.told);
  fresh.language = std::move(memory.language);
  fresh.identity = identity;
  memory = std::move(fresh);
}

}  // namespace companion::news
