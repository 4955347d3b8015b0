#pragma once

#include <functional>
#include <string>

#include "companion/window/figures_feed.hpp"
#include "companion/window/goals_store.hpp"
#include "companion/window/history_feed.hpp"
#include "companion/window/model.hpp"
#include "companion/window/sign_in_flow.hpp"

namespace companion::window {

/// What the window knows and does: reads and changes the user's sign-in, goals, client file and
/// figures, always beside the main loop, and tells its listener. The one of a process lives as
/// long as its main loop. While something is being stored the process stays, window or not.
class Session {
 public:
  struct Listener {
    std::function<void()> changed;
    /// A sign-in has ended, well or not: the browser is in front.
    std::function<void()> signInEnded;
    /// What the widget shows may look different now.
    std::function<void()> widgetChanged;
  };

  Session();

  void setListener(Listener listener) { listener_ = std::move(listener); }
  [[nodiscard]] const State& state() const { return state_; }

  /// Reads everything at hand; fetches what is missing or old.
  void load();
  void unlockKeyring();
  void takeOverClientFile(const std::string& file);
  void signIn();
  void cancelSignIn() { signIn_.cancel(); }
  void dismissFailure() { signIn_.dismiss(); }
  void openBrowserAgain() { signIn_.openBrowser(); }
  void signOut();
  void storeGoals(const velmora::Objectives& goals) { goals_.store(goals); }
  /// Fetches figures and days, because the user wants them.
  void refresh() { figures_.refresh(); }
  void closeMessage();

 private:
  void changed() const;
  void widgetChanged() const;
  void take(const Status& status, Keyring keyring, const std::string& accountName);
  void signInFinished(const SignInOutcome& outcome);
  void signedOut(bool isWithdrawn);
  void forgetUser();

  State state_;
  Listener listener_;
  SignInFlow signIn_;
  GoalsStore goals_;
  FiguresFeed figures_;
  HistoryFeed history_;
};

}  // namespace companion::window
