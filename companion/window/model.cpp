#include "companion/window/model.hpp"

#include <algorithm>
#include <cmath>

#include "VelmoraWidget/CurrencyFormat.hpp"
#include "platform/foundation/clock.hpp"
#include "platform/foundation/formatting.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/text.hpp"

namespace companion::window {

using platform::localizedFormat;
using platform::localizedString;

namespace {

constexpr double reloadInterval = 1800;  // seconds, the widget's own

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
  if (!state.isLoaded) return Page::loading;
  if (state.status.isSignedIn) return Page::overview;
  return state.isKeyringLocked ? Page::locked : Page::welcome;
}

std::string accountText(const State& state) {
  if (!state.accountName.empty()) return state.accountName;
  const auto name = state.status.account.value_or("");
  return name.substr(name.rfind('/') + 1);
}

std::string clientFileText(const State& state) {
  if (!state.clientFileError.empty()) return state.clientFileError;
  if (state.status.client) return state.status.client->client.config.clientID;
  return localizedString("Drop it here or choose it.");
}

double shareOf(double earned, double goal) {
  const double share = goal > 0 ? earned / goal : 0;
  return std::isfinite(share) ? std::clamp(share, 0.0, 1.0) : 0;
}

std::string progressText(double earned, double goal, const std::string& currency) {
  const double share = goal > 0 ? earned / goal : 0;
  const auto locale = velmora::displayLocale();
  const auto percent = platform::decimalText(std::isfinite(share) ? share * 100 : 0, 0, locale);
  return localizedFormat("%s so far, %s %% of the goal",
                         {velmora::formatCurrency(earned, currency), percent.value_or("0")});
}

Notice noticeFor(const RefreshFailure& failure) {
  const auto title = localizedString("The figures could not be refreshed");
  using Case = RefreshFailure::Case;
  switch (failure.kind) {
    case Case::signedOut:
      return {localizedString("Google ended the sign-in"),
              localizedString("Sign in again to get new figures. The last ones stay until then."),
              true};
    case Case::unreachable:
      return {title, localizedString("Google could not be reached. Check the network, then try "
                                     "again.")};
    case Case::forbidden:
      return {title, localizedString("Google did not allow it. Check that the AdSense Management "
                                     "API is enabled in the project of your client file.")};
    case Case::tooMany:
      return {title, localizedString("Google asks for a pause. Try again later.")};
    case Case::other:
      break;
  }
  return {title, platform::oneLine(failure.description)};
}

std::string refreshedText(const State& state) {
  if (!state.status.snapshot) return "";
  const auto time =
      platform::dateTimeText(state.status.snapshot->updatedAt, velmora::displayLocale());
  return localizedFormat("Refreshed: %s", {time});
}

bool wantsRefresh(const State& state) {
  if (!state.status.isSignedIn || state.isRefreshing) return false;
  const auto& snapshot = state.status.snapshot;
  return !snapshot || !(snapshot->updatedAt + reloadInterval > platform::now());
}

}  // namespace companion::window
