#pragma once

#include <optional>
#include <string>

#include "companion/status.hpp"

namespace companion::window {

enum class SignInPhase {
  none,
  preparing,  ///< before the browser
  waiting,    ///< for the browser
  finishing,  ///< the answer has come; it cannot be cancelled any more
  failed
};

/// Everything that the window's pages are made from.
struct State {
  bool isLoaded = false;
  bool isKeyringLocked = false;  ///< so that it is not known whether somebody is signed in
  Status status;
  std::string accountName;  ///< as the sign-in told it; empty after a restart

  SignInPhase signIn = SignInPhase::none;
  std::string address;  ///< that the browser is to open
  bool browserOpened = true;
  std::string signInError;

  std::string clientFileError;  ///< about the file that was offered last

  bool isRefreshing = false;
  std::optional<RefreshFailure> failure;  ///< of the last refresh
};

enum class Page { loading, locked, welcome, signingIn, signInFailed, overview };

Page pageFor(const State& state);

/// Who is signed in: the account's name, else its id, else nothing.
std::string accountText(const State& state);

/// What stands under the button or row that takes a client file.
std::string clientFileText(const State& state);

/// How far a goal has come: "€9.21 so far, 92 % of the goal".
std::string progressText(double earned, double goal, const std::string& currency);

/// A share for a ring, from 0 to 1.
double shareOf(double earned, double goal);

/// What is said of a refresh that failed, and what to do.
struct Notice {
  std::string title;
  std::string advice;
  bool offersSignIn = false;  ///< else another try
};

Notice noticeFor(const RefreshFailure& failure);

/// When the figures were fetched, in the local time zone; empty without figures.
std::string refreshedText(const State& state);

/// Whether the figures at hand are older than the widget would let them become.
bool wantsRefresh(const State& state);

}  // namespace companion::window
