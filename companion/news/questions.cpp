#include "companion/news/questions.hpp"

#include <algorithm>

#include "companion/news/intervals.hpp"

namespace companion::news {

namespace {

bool isDue(const std::optional<Asked>& last, double interval, platform::Instant now) {
  return !last || !(last->at + interval > now);
}

/// Notices change slowly; only what failed is asked again soon.
bool areNoticesDue(const std::optional<Asked>& last, platform::Instant now) {
  return isDue(last, last && last->isAnswered ? betweenNotices : betweenProbes, now);
}

bool isAnyOn(const Choices& choices, std::initializer_list<const char*> kinds) {
  return std::any_of(kinds.begin(), kinds.end(),
                     [&choices](const char* kind) { return isOn(choices, kind); });
}

}  // namespace

Questions dueQuestions(const Facts& facts, const Memory& memory, const Choices& choices) {
  if (facts.clientFile) return {};  // nobody would answer
  const auto isOld = [&](double seconds) { return isOlder(facts.figuresFrom, seconds, facts.now); };
  const auto now = facts.now;
  Questions due;
  due.token = isAnyOn(choices, {"signInEnded", "clientRefused", "refreshFails"}) &&
              (!facts.figures || isOld(oneInterval)) &&
              isDue(memory.tokenAsked, betweenProbes, now);
  due.report = isOn(choices, "refreshFails") && isOld(threeIntervals) &&
               isDue(memory.reportAsked, betweenProbes, now);
  due.alerts = isOn(choices, "alert") && areNoticesDue(memory.alertsAsked, now);
  due.policyIssues = isOn(choices, "policy") && areNoticesDue(memory.policyAsked, now);
  return due;
}

}  // namespace companion::news
