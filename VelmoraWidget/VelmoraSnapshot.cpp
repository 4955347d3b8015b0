#include "VelmoraWidget/VelmoraSnapshot.hpp"

#include <nlohmann/json.hpp>

namespace velmora {

namespace {

using platform::Json;
using platform::JsonDecoder;
using platform::jsonNumber;

struct TotalKey {
  const char* key;
  double VelmoraSnapshot::* field;
};

struct PerfKey {
  const char* key;
  double PerfValues::* field;
};

struct TextKey {
  const char* key;
  std::optional<std::string> VelmoraSnapshot::* field;
};

constexpr TotalKey totalKeys[] = {{"today", &VelmoraSnapshot::today},
                                  {"yesterday", &VelmoraSnapshot::yesterday},
                                  {"yesterdayPrevWeek", &VelmoraSnapshot::yesterdayPrevWeek},
                                  {"last7", &VelmoraSnapshot::last7},
                                  {"prev7", &VelmoraSnapshot::prev7},
                                  {"monthToDate", &VelmoraSnapshot::monthToDate},
                                  {"monthLastYear", &VelmoraSnapshot::monthLastYear}};

constexpr PerfKey perfKeys[] = {{"pageViews", &PerfValues::pageViews},
                                {"rpm", &PerfValues::rpm},
                                {"impressions", &PerfValues::impressions},
                                {"clicks", &PerfValues::clicks},
                                {"cpc", &PerfValues::cpc},
                                {"ctr", &PerfValues::ctr}};

constexpr TextKey textKeys[] = {{"balance", &VelmoraSnapshot::balance},
                                {"lastPaymentAmount", &VelmoraSnapshot::lastPaymentAmount},
                                {"lastPaymentDateLabel", &VelmoraSnapshot::lastPaymentDateLabel}};

Json jsonForm(const PerfValues& values) {
  Json object = Json::object();
  for (const auto& [key, field] : perfKeys) object[key] = jsonNumber(values.*field);
  return object;
}

PerfValues decodePerfValues(const JsonDecoder& object) {
  PerfValues values;
  for (const auto& [key, field] : perfKeys) values.*field = object.at(key).number();
  return values;
}

}  // namespace

const VelmoraSnapshot& VelmoraSnapshot::sample() {
  static const VelmoraSnapshot snapshot{.today = 9.21,
                                        .yesterday = 11.49,
                                        .yesterdayPrevWeek = 16.36,
                                        .last7 = 96.0,
                                        .prev7 = 112.58,
                                        .monthToDate = 217.81,
                                        .monthLastYear = 195.92,
                                        .perfYesterday = {.pageViews = 4510,
                                                          .rpm = 2.55,
                                                          .impressions = 15100,
                                                          .clicks = 203,
                                                          .cpc = 0.06,
                                                          .ctr = 4.5},
                                        .perfPrevWeek = {.pageViews = 3671,
                                                         .rpm = 4.45,
                                                         .impressions = 14493,
                                                         .clicks = 176,
                                                         .cpc = 0.09,
                                                         .ctr = 4.79},
                                        .balance = "389,85 €",
                                        .lastPaymentAmount = "341,95 €",
                                        .lastPaymentDateLabel = "21 mai 2026",
                                        .currency = "EUR",
                                        .updatedAt = platform::instantFromUnixSeconds(0)};
  return snapshot;
}

Json jsonForm(const VelmoraSnapshot& snapshot) {
  Json object = Json::object();
  for (const auto& [key, field] : totalKeys) object[key] = jsonNumber(snapshot.*field);
  object["perfYesterday"] = jsonForm(snapshot.perfYesterday);
  object["perfPrevWeek"] = jsonForm(snapshot.perfPrevWeek);
  for (const auto& [key, field] : textKeys) {
    if (snapshot.*field) object[key] = *(snapshot.*field);
  }
  object["currency"] = snapshot.currency;
  object["updatedAt"] = jsonNumber(snapshot.updatedAt.secondsSinceReferenceDate);
  return object;
}

std::string encodeSnapshot(const VelmoraSnapshot& snapshot) {
  return platform::encodeJson(jsonForm(snapshot));
}

VelmoraSnapshot decodeSnapshot(std::string_view json) {
  const JsonDecoder object(json);
  VelmoraSnapshot snapshot;
  for (const auto& [key, field] : totalKeys) snapshot.*field = object.at(key).number();
  snapshot.perfYesterday = decodePerfValues(object.at("perfYesterday"));
  snapshot.perfPrevWeek = decodePerfValues(object.at("perfPrevWeek"));
  for (const auto& [key, field] : textKeys) snapshot.*field = object.optionalString(key);
  snapshot.currency = object.at("currency").string();
  snapshot.updatedAt = {object.at("updatedAt").number()};
  return snapshot;
}

}  // namespace velmora
