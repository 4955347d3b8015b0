#include "companion/news/facts.hpp"

#include "VelmoraWidget/Reports.hpp"

namespace companion::news {

std::string dayText(platform::Instant instant) { return velmora::makeDayFormatter().text(instant); }

const velmora::VelmoraSnapshot* figuresOfToday(const Facts& facts) {
  const bool isToday = facts.figures && dayText(facts.figuresFrom) == dayText(facts.now);
  return isToday ? &*facts.figures : nullptr;
}

bool isRefreshedSince(const Facts& facts, platform::Instant instant) {
  return facts.figures && facts.figuresFrom > instant;
}

const Failure* tokenFailure(const Facts& facts, FailureKind kind) {
  const auto& token = facts.token;
  if (!token || !token->failure || isRefreshedSince(facts, token->at)) return nullptr;
  return token->failure->kind == kind ? &*token->failure : nullptr;
}

}  // namespace companion::news
