#include "companion/news/kinds/kinds.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::news {

using platform::localizedFormat;
using platform::localizedString;

namespace {

constexpr const char* kind = "payment";

/// Empty without a payment.
std::string idOf(const Facts& facts) {
  const auto date = facts.figures ? facts.figures->lastPaymentDateLabel.value_or("") : "";
  return date.empty() ? "" : "payment-" + date;
}

std::vector<Entry> find(const Facts& facts) {
  const auto id = idOf(facts);
  if (id.empty()) return {};
  const auto& date = *facts.figures->lastPaymentDateLabel;
  const auto& amount = facts.figures->lastPaymentAmount;
  const auto body = amount ? localizedFormat("AdSense paid %s on %s.", {*amount, date})
                           : localizedFormat("AdSense paid on %s.", {date});
  return {{id, localizedString("A new payment"), body, Urgency::normal}};
}

/// Never over; the one before is of no interest once there is another.
Standing standing(const Told& told, const Facts& facts) {
  const auto id = idOf(facts);
  return id.empty() || id == told.id ? Standing::holds : Standing::forgotten;
}

}  // namespace

Kind paymentKind() {
  return {kind,
          localizedString("A payment"),
          localizedString("When AdSense has paid"),
          find,
          standing,
          true,
          true};
}

}  // namespace companion::news
