#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "companion/history/history.hpp"
#include "companion/status.hpp"

namespace companion::window {

enum class SignInPhase {
  none,
  preparing,  ///< before the browser
  waiting,    ///< for the browser
  finishing,  ///< the answer has come; it cannot be cancelled any more
  failed
};

enum class Keyring {
  usable,
  locked,  ///< so that it is not known whether somebody is signed in
  away     ///< the same
};

/// Something that stays on the screen until it is over or the user has seen it.
struct Notice {
  std::string title;
  std::string advice;
  std::string details;  ///< the technical text; may be empty
  std::optional<Remedy> remedy;
  std::string page;          ///< for the remedy that opens one
  bool canBeClosed = false;  ///< else it goes when its reason does

  bool operator==(const Notice&) const = default;
};

/// Everything that the window's pages are made from.
struct State {
  bool isLoaded = false;
  Keyring keyring = Keyring::usable;
  Status status;
  std::string accountName;  ///< for people; empty when it is not known

  SignInPhase signIn = SignInPhase::none;
  std::string address;  ///< that the browser is to open
  bool browserOpened = true;
  std::optional<Failure> signInFailure;
  bool isSigningOut = false;

  std::optional<Notice> clientFileProblem;  ///< of the file that was offered last
  std::optional<Notice> message;            ///< what became of something the user did

  bool isRefreshing = false;
  std::optional<platform::Instant> triedAt;  ///< when figures were asked for last
  std::optional<Failure> failure;            ///< of the last refresh
  /// The last figures when they could not be stored; the status does not have them then.
  std::optional<velmora::VelmoraSnapshot> unstored;

  std::shared_ptr<const History> history;
  bool isFetchingHistory = false;
  std::optional<platform::Instant> historyTriedAt;
  std::optional<Failure> historyFailure;
};

enum class Page {
  loading,
  locked,
  noKeyring,
  welcome,
  signingIn,
  signInFailed,
  signingOut,
  overview
};

Page pageFor(const State& state);

/// The newest figures, stored or not; null without any.
const velmora::VelmoraSnapshot* figuresOf(const State& state);

/// The id of the account that is signed in, without the kind of resource; empty when not known.
std::string accountId(const State& state);

/// Who is signed in: the account's name, else its id, else nothing.
std::string accountText(const State& state);

/// What stands under the row that takes a client file: the client in force.
std::string clientFileText(const State& state);

/// How far a goal has come: "61 % of €15".
std::string progressText(double earned, double goal, const std::string& currency);

/// A share for a ring, from 0 to 1.
double shareOf(double earned, double goal);

/// A failure as it is shown.
Notice noticeFor(const Failure& failure);

/// What is wrong with the figures now, the most important first.
std::vector<Notice> noticesFor(const State& state);

/// When the figures were fetched, in the local time zone; what else there is to say without any.
std::string refreshedText(const State& state);

/// Whether to fetch figures without being asked to: they are older than the widget would let them
/// become, and the last try lies as long back, however it ended.
bool wantsRefresh(const State& state);

/// The same for the days behind the figures.
bool wantsHistory(const State& state);

}  // namespace companion::window
