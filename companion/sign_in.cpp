#include "companion/sign_in.hpp"

#include <glib.h>

#include <algorithm>
#include <utility>

#include "VelmoraWidget/AccountResolution.hpp"
#include "VelmoraWidget/AdSenseBaseURL.hpp"
#include "VelmoraWidget/AdSenseClient.hpp"
#include "VelmoraWidget/RequestTimeout.hpp"
#include "companion/account_name.hpp"
#include "companion/authorization.hpp"
#include "companion/client_file.hpp"
#include "companion/end_page.hpp"
#include "companion/former_figures.hpp"
#include "companion/main_loop_tasks.hpp"
#include "companion/redirect_address.hpp"
#include "companion/redirect_listener.hpp"
#include "companion/running_host.hpp"
#include "companion/sign_in_words.hpp"
#include "companion/token_exchange.hpp"
#include "companion/user_data.hpp"
#include "platform/foundation/http.hpp"
#include "platform/foundation/text.hpp"
#include "platform/foundation/user_defaults.hpp"

namespace companion {

namespace {

using Clock = std::chrono::steady_clock;

/// Keeps an error of another thread as it is.
template <class Work>
std::optional<SignInError> errorOf(const Work& work) {
  try {
    work();
    return std::nullopt;
  } catch (const SignInError& error) {
    return error;
  } catch (const std::exception& error) {
    return SignInError(SignInError::Case::unreachable, error.what());
  }
}

/// The first account of the signed-in user; absent when it cannot be had now, which is no reason
/// to refuse a sign-in. Throws SignInError when there is none.
std::optional<velmora::Account> firstAccount(const Grant& grant,
                                             std::chrono::milliseconds timeout) {
  try {
    const auto response =
        platform::sendRequest({.url = velmora::adSenseBaseURL() + "/accounts",
                               .headers = {{"Authorization", "Bearer " + grant.accessToken}},
                               .body = std::nullopt,
                               .timeout = std::min(timeout, velmora::requestTimeout())});
    if (response.status != 200) return std::nullopt;
    const auto answer = velmora::decodeAccountsResponse(response.body);
    if (answer.accounts && !answer.accounts->empty()) return answer.accounts->front();
  } catch (const std::exception&) {
    return std::nullopt;
  }
  throw SignInError(SignInError::Case::noAccount);
}

/// Stores the token. What looks like a failure may have come too late to be one.
void keepToken(const std::string& token) {
  try {
    storeRefreshToken(token);
  } catch (const SignInError&) {
    if (isStoredToken(token) != true) throw;
  }
}

/// Puts the new user in the former one's place. A failure changes nothing, and whenever this is
/// killed, the new token is not beside the former figures.
void replaceUser(const std::string& token, const std::optional<velmora::Account>& account) {
  putFiguresAside();
  try {
    keepToken(token);
  } catch (const SignInError&) {
    settleFigures();
    throw;
  }
  try {
    forgetFigures();
  } catch (const SignInError&) {
    settleFigures();  // aside they are out of sight until they can be forgotten
  }
  if (account)
    platform::UserDefaults::standard().setString(velmora::accountCacheKey, account->name);
}

/// Throws SignInError; nobody is then to hold what was granted in vain.
std::string settle(const Grant& grant, std::chrono::milliseconds timeout) {
  try {
    const auto account = firstAccount(grant, timeout);
    replaceUser(grant.refreshToken, account);
    if (!account) return "";
    const auto name = platform::oneLine(account->displayName.value_or(account->name));
    keepAccountName(account->name, name);
    return name;
  } catch (const SignInError&) {
    if (isStoredToken(grant.refreshToken) == false) revokeToken(grant.refreshToken);
    throw;
  }
}

}  // namespace

class SignIn::Flow : public std::enable_shared_from_this<SignIn::Flow> {
 public:
  Flow(std::chrono::seconds timeLimit, SignInEvents events)
      : deadline_(Clock::now() + timeLimit), events_(std::move(events)), mayAsk_(events_.unlock) {}
  ~Flow() { stopTimer(); }
  Flow(const Flow&) = delete;
  Flow& operator=(const Flow&) = delete;

  void start() {
    timer_ = g_timeout_add(static_cast<unsigned>(timeLeft().count()), timeIsUp, this);
    lookAround();
  }

  void cancel() {
    if (!answered_) end({SignInError(SignInError::Case::cancelled), ""});
  }

  /// Tells nothing any more.
  void forget() {
    over_ = true;
    events_ = {};
    stopTimer();
    dropListener();
  }

 private:
  [[nodiscard]] std::chrono::milliseconds timeLeft() const {
    using Milliseconds = std::chrono::milliseconds;
    return std::max(Milliseconds(1),
                    std::chrono::duration_cast<Milliseconds>(deadline_ - Clock::now()));
  }

  void lookAround() {
    auto self = shared_from_this();
    runBeside([self] { self->prepare(); }, [self] { self->listen(); });
  }

  /// Beside the main loop: everything that can be found out before the browser opens.
  void prepare() {
    outcome_.error = errorOf([this] {
      client_ = requireClient().client;
      if (client_.isWeb && !loopbackRedirect(client_))
        throw SignInError(SignInError::Case::noLoopbackAddress);
      requireKeyring();
      requireState();
    });
  }

  void listen() {
    if (over_) return;
    if (!outcome_.error) outcome_.error = errorOf([this] { openListener(); });
    if (outcome_.error && outcome_.error->kind == SignInError::Case::keyringLocked && mayAsk_) {
      askToUnlock();
    } else if (outcome_.error) {
      end(outcome_);
    } else if (events_.waiting) {
      events_.waiting(authorizationAddress(client_.config, request_));
    }
  }

  /// Once: who has just unlocked the keyring is not asked again.
  void askToUnlock() {
    mayAsk_ = false;
    auto self = shared_from_this();
    events_.unlock([self](bool isUsable) {
      if (self->over_) return;
      if (isUsable)
        self->lookAround();
      else
        self->end(self->outcome_);
    });
  }

  void openListener() {
    const auto address = client_.isWeb ? *loopbackRedirect(client_) : RedirectAddress{};
    listener_ = std::make_unique<RedirectListener>(
        address, [this](const std::string& query) { return receive(query); });
    request_ = makeAuthorizationRequest(
        client_.isWeb ? address.uri : "http://127.0.0.1:" + std::to_string(listener_->port()));
  }

  /// Whether a redirect belongs to this sign-in. The first one decides; a browser may repeat it,
  /// but another answer with the same state is none of the user's.
  bool receive(const std::string& query) {
    if (answered_) return query == *answered_;
    const auto answer = readRedirect(query, request_);
    if (!answer) return false;
    answered_ = query;
    stopTimer();
    if (events_.answered) events_.answered();
    auto self = shared_from_this();
    runBeside([self, answer = *answer] { self->complete(answer); }, [self] { self->tell(); });
    return true;
  }

  /// Beside the main loop.
  void complete(const AuthorizationAnswer& answer) {
    outcome_.error = errorOf([&] {
      if (const auto* failure = std::get_if<AuthorizationFailure>(&answer)) {
        using Case = SignInError::Case;
        throw SignInError(failure->error == "access_denied" ? Case::denied : Case::refused,
                          failure->error);
      }
      const auto& code = std::get<AuthorizationCode>(answer).code;
      const auto grant = exchangeCode(client_.config, request_, code, timeLeft());
      outcome_.account = settle(grant, timeLeft());
    });
  }

  /// First the browser is told, then everybody else.
  void tell() {
    if (over_ || !listener_) return;
    if (!outcome_.error) refreshRunningHost();
    const auto page = outcome_.error ? failurePage(describeSignInFailure(*outcome_.error).advice)
                                     : successPage(outcome_.account);
    listener_->answer(page, [this] { end(outcome_); });
  }

  void end(const SignInOutcome& outcome) {
    if (over_) return;
    over_ = true;
    stopTimer();
    dropListener();
    if (events_.finished) events_.finished(outcome);
  }

  /// Later, since it may be the listener that calls.
  void dropListener() {
    const std::shared_ptr<RedirectListener> listener = std::move(listener_);
    if (listener) runSoon([listener] {});
  }

  static gboolean timeIsUp(gpointer flow) {
    auto* self = static_cast<Flow*>(flow);
    self->timer_ = 0;
    self->end({SignInError(SignInError::Case::timeLimit), ""});
    return G_SOURCE_REMOVE;
  }

  void stopTimer() {
    if (timer_ != 0) g_source_remove(std::exchange(timer_, 0));
  }

  Clock::time_point deadline_;
  SignInEvents events_;
  bool mayAsk_;  ///< for the keyring to be unlocked
  unsigned timer_ = 0;
  bool over_ = false;
  Client client_;
  AuthorizationRequest request_;
  std::unique_ptr<RedirectListener> listener_;
  std::optional<std::string> answered_;  ///< the query that decided
  SignInOutcome outcome_;
};

SignIn::SignIn(std::chrono::seconds timeLimit, SignInEvents events)
    : flow_(std::make_shared<Flow>(timeLimit, std::move(events))) {
  flow_->start();
}

SignIn::~SignIn() { flow_->forget(); }

void SignIn::cancel() { flow_->cancel(); }

}  // namespace companion
