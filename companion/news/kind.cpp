#include "companion/news/kind.hpp"

#include "companion/news/kinds/kinds.hpp"

namespace companion::news {

std::vector<Kind> kinds() {
  return {signInEndedKind(), clientRefusedKind(), refreshFailsKind(),
          dailyGoalKind(),   monthlyGoalKind(),   dropKind(),
          paymentKind(),     alertKind(),         policyKind()};
}

}  // namespace companion::news
