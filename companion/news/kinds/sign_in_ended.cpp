#include "companion/news/kinds/kinds.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::news {

using platform::localizedString;

namespace {

constexpr const char* id = "signInEnded";

std::vector<Entry> find(const Facts& facts) {
  const auto* failure = tokenFailure(facts, FailureKind::signInEnded);
  if (failure == nullptr) return {};
  const auto body = localizedString(
      "Sign in again to get new figures; the last ones stay until then. If you published the "
      "consent screen after your last sign-in, only this one more is needed. If you never did, "
      "Google ends each sign-in after 7 days.");
  return {{id, failure->title, body, Urgency::critical}};
}

Standing standing(const Told& told, const Facts& facts) {
  return isRefreshedSince(facts, told.at) ? Standing::over : Standing::holds;
}

}  // namespace

Kind signInEndedKind() {
  return {id, localizedString("The sign-in ended"),
          localizedString("When Google asks you to sign in again"), find, standing};
}

}  // namespace companion::news
