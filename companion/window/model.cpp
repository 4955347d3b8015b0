#include "companion/window/model.hpp"

#include <algorithm>
#include <cmath>

#include "VelmoraWidget/CurrencyFormat.hpp"
#include "companion/history/chart_model.hpp"
#include "platform/foundation/bundle.hpp"
#include "platform/foundation/clock.hpp"
#include "platform/foundation/formatting.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/percent_text.hpp"

namespace companion::window {

using platform::localizedFormat;
using platform::localizedString;

namespace {

constexpr double reloadInterval = 1800;  // seconds, the widget's own

/// After the clock was set back, what lies in the future is not recent for ever.
bool isRecent(const std::optional<platform::Instant>& instant) {
  if (!instant) return false;
  const double age = platform::now().secondsSinceReferenceDate - instant->secondsSinceReferenceDate;
  return std::abs(age) < reloadInterval;
}

Notice noticeForUnstored() {
  const auto folder = platform::stateFolder();
  return {.title = localizedString("The figures are not kept"),
          .advice = localizedFormat("Nothing can be stored in %s. The widget shows older figures "
                                    "until there is room, or its permissions are mended.",
                                    {folder ? folder->string() : "~"})};
}

}  // namespace

Page pageFor(const State& state) {
  switch (state.signIn) {
    case SignInPhase::none:
      break;
    case SignInPhase::failed:
      return Page::signInFailed;
    default:
      return Page::signingIn;
  }
  if (state.isSigningOut) return Page::signingOut;
  if (!state.isLoaded) return Page::loading;
  if (state.status.isSignedIn) return Page::overview;
  if (state.keyring == Keyring::usable) return Page::welcome;
  return state.keyring == Keyring::locked ? Page::locked : Page::noKeyring;
}

const velmora::VelmoraSnapshot* figuresOf(const State& state) {
  if (state.unstored) return &*state.unstored;
  return state.status.snapshot ? &*state.status.snapshot : nullptr;
}

std::string accountId(const State& state) {
  const auto name = state.status.account.value_or("");
  return name.substr(name.rfind('/') + 1);
}

std::string accountText(const State& state) {
  return state.accountName.empty() ? accountId(state) : state.accountName;
}

std::string clientFileText(const State& state) {
  if (state.status.client) return state.status.client->client.config.clientID;
  return localizedString("Drop it here or choose it.");
}

double shareOf(double earned, double goal) {
  const double share = goal > 0 ? earned / goal : 0;
  return std::isfinite(share) ? std::clamp(share, 0.0, 1.0) : 0;
}

std::string progressText(double earned, double goal, const std::string& currency) {
  const double share = goal > 0 ? earned / goal : 0;
  const auto percent =
      platform::percentText(std::isfinite(share) ? share * 100 : 0, 0, velmora::displayLocale());
  return localizedFormat("%s of %s", {percent, shortAmount(goal, currency)});
}

Notice noticeFor(const Failure& failure) {
  return {failure.title, failure.advice, failure.details, failure.remedy, failure.page, false};
}

std::vector<Notice> noticesFor(const State& state) {
  std::vector<Notice> notices;
  if (state.message) notices.push_back(*state.message);
  if (state.failure) notices.push_back(noticeFor(*state.failure));
  if (state.unstored) notices.push_back(noticeForUnstored());
  if (state.historyFailure && !state.failure) notices.push_back(noticeFor(*state.historyFailure));
  return notices;
}

std::string refreshedText(const State& state) {
  if (const auto* figures = figuresOf(state))
    return localizedFormat("Refreshed: %s",
                           {platform::dateTimeText(figures->updatedAt, velmora::displayLocale())});
  return state.isRefreshing ? localizedString("Fetching your figures…")
                            : localizedString("There are no figures yet.");
}

bool wantsRefresh(const State& state) {
  if (!state.status.isSignedIn || state.isRefreshing || isRecent(state.triedAt)) return false;
  const auto* figures = figuresOf(state);
  return figures == nullptr || !(figures->updatedAt + reloadInterval > platform::now());
}

bool wantsHistory(const State& state) {
  if (!state.status.isSignedIn || state.isFetchingHistory || isRecent(state.historyTriedAt))
    return false;
  return !state.history || !(state.history->updatedAt + reloadInterval > platform::now());
}

}  // namespace companion::window
