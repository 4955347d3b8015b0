#include "companion/news/kinds/kinds.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::news {

using platform::localizedString;

namespace {

constexpr const char* id = "clientRefused";

std::vector<Entry> find(const Facts& facts) {
  const auto* failure =
      facts.clientFile ? &*facts.clientFile : tokenFailure(facts, FailureKind::clientRefused);
  if (failure == nullptr) return {};
  return {{id, failure->title, failure->advice, Urgency::critical}};
}

Standing standing(const Told& told, const Facts& facts) {
  return isRefreshedSince(facts, told.at) ? Standing::over : Standing::holds;
}

}  // namespace

Kind clientRefusedKind() {
  return {id, localizedString("The client file is refused"),
          localizedString("When Google does not accept it any more, or it is gone"), find,
          standing};
}

}  // namespace companion::news
