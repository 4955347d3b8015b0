#include <tuple>

#include "companion/news/intervals.hpp"
#include "companion/news/kinds/kinds.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::news {

using platform::localizedString;

namespace {

constexpr const char* id = "refreshFails";

/// What is told by another kind, or says nothing about the provider.
bool isElsewhere(FailureKind kind, bool ofToken) {
  switch (kind) {
    case FailureKind::noNetwork:
    case FailureKind::keyring:
    case FailureKind::signedOut:
      return true;
    case FailureKind::signInEnded:
    case FailureKind::clientRefused:
      return ofToken;
    default:
      return false;
  }
}

/// What keeps new figures away, by the request that was made last.
const Failure* lastFailure(const Facts& facts) {
  const auto& [token, report] = std::tie(facts.token, facts.report);
  const bool ofToken = token && token->failure && (!report || token->at >= report->at);
  const auto& last = ofToken ? token : report;
  if (!last || !last->failure || isRefreshedSince(facts, last->at)) return nullptr;
  return isElsewhere(last->failure->kind, ofToken) ? nullptr : &*last->failure;
}

std::vector<Entry> find(const Facts& facts) {
  const auto* failure = lastFailure(facts);
  if (failure == nullptr || !isOlder(facts.figuresFrom, threeIntervals, facts.now)) return {};
  const auto where = failure->page.empty() ? "" : " " + failure->page;
  return {{id, failure->title, failure->advice + where, Urgency::normal}};
}

Standing standing(const Told& told, const Facts& facts) {
  return isRefreshedSince(facts, told.at) ? Standing::over : Standing::holds;
}

}  // namespace

Kind refreshFailsKind() {
  return {id, localizedString("No new figures"),
          localizedString("When Google can be reached, but gives none for 90 minutes"), find,
          standing};
}

}  // namespace companion::news
