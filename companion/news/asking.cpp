#include "companion/news/asking.hpp"

#include <algorithm>
#include <tuple>

#include "VelmoraWidget/AccessToken.hpp"
#include "VelmoraWidget/AccountResolution.hpp"
#include "VelmoraWidget/AdSenseBaseURL.hpp"
#include "VelmoraWidget/AdSenseClient.hpp"
#include "VelmoraWidget/CurrencyFormat.hpp"
#include "VelmoraWidget/Reports.hpp"
#include "platform/foundation/http.hpp"
#include "platform/foundation/user_defaults.hpp"

namespace companion::news {

namespace {

constexpr int reportDays = 35;  // as the widget asks for

/// The requests of one run, all before one deadline.
class Conversation {
 public:
  Conversation(platform::Instant now, std::chrono::steady_clock::time_point deadline)
      : now_(now), deadline_(deadline) {}

  void signIn() { client_.accessToken = velmora::refreshAccessToken(timeLeft()); }

  /// The one request that comes next in a refresh.
  void askReport() {
    if (platform::UserDefaults::standard().string(velmora::accountCacheKey)) {
      const auto first = velmora::reportCalendar.addingDays(now_, -(reportDays - 1));
      std::ignore = client().generateReport(account(), velmora::dailyReportItems(first, now_));
    } else {
      account();
    }
  }

  std::string get(const std::string& path) {
    const auto url = client_.baseURL + "/" + account() + "/" + path;
    return client().authorizedGet(url);
  }

 private:
  [[nodiscard]] std::chrono::milliseconds timeLeft() const {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline_ - std::chrono::steady_clock::now());
    if (left.count() <= 0)
      throw platform::TransportError("No answer in time.",
                                     platform::TransportError::Case::noAnswer);
    return std::min(left, velmora::requestTimeout());
  }

  const velmora::AdSenseClient& client() {
    client_.timeout = timeLeft();
    return client_;
  }

  /// The cached one, else the first of the list; it is for a refresh to keep that.
  const std::string& account() {
    if (account_.empty())
      account_ = platform::UserDefaults::standard().string(velmora::accountCacheKey).value_or("");
    if (account_.empty()) account_ = client().fetchAccountName();
    return account_;
  }

  platform::Instant now_;
  std::chrono::steady_clock::time_point deadline_;
  velmora::AdSenseClient client_{"", velmora::adSenseBaseURL()};
  std::string account_;
};

/// As the service wants it: "pt-BR" (BCP 47).
std::string userLanguage() {
  auto language = velmora::displayLocale();
  std::replace(language.begin(), language.end(), '_', '-');
  return language;
}

/// Does it and returns what went wrong.
template <class Action>
std::optional<Failure> attempt(const Action& action) {
  try {
    action();
    return std::nullopt;
  } catch (const std::exception& error) {
    return describeFailure(error);
  }
}

}  // namespace

void noteAsked(Memory& memory, const Questions& questions, platform::Instant now) {
  const Asked asked{now, false};
  memory.tokenAsked = asked;  // every request begins there
  if (questions.report) memory.reportAsked = asked;
  if (questions.alerts) memory.alertsAsked = asked;
  if (questions.policyIssues) memory.policyAsked = asked;
}

void ask(Memory& memory, const Questions& questions, platform::Instant now,
         std::chrono::steady_clock::time_point deadline) {
  Conversation conversation(now, deadline);
  memory.token = Answer{now, attempt([&] { conversation.signIn(); })};
  memory.tokenAsked->isAnswered = true;
  if (memory.token->failure) return;
  if (questions.report) {
    memory.report = Answer{now, attempt([&] { conversation.askReport(); })};
    memory.reportAsked->isAnswered = true;
  }
  const auto get = [&](const std::string& path) { return conversation.get(path); };
  if (questions.alerts)
    memory.alertsAsked->isAnswered =
        !attempt([&] { memory.alerts = fetchAlerts(get, userLanguage()); });
  if (questions.policyIssues)
    memory.policyAsked->isAnswered =
        !attempt([&] { memory.policyIssues = fetchPolicyIssues(get); });
}

}  // namespace companion::news
