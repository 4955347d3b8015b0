#pragma once

#include <functional>
#include <memory>
#include <string>

#include "companion/sign_in.hpp"
#include "companion/window/model.hpp"

namespace companion::window {

/// What the window knows and does: reads and changes the user's sign-in, goals, client file and
/// figures, always beside the main loop, and tells its listener. The one of a process lives as
/// long as its main loop. While something is being stored the process stays, window or not.
class Session {
 public:
  struct Listener {
    std::function<void()> changed;
    std::function<void(const std::string&)> said;
    std::function<void()> signedIn;
    /// What the widget shows may look different now.
    std::function<void()> widgetChanged;
  };

  void setListener(Listener listener) { listener_ = std::move(listener); }
  [[nodiscard]] const State& state() const { return state_; }

  /// Reads everything at hand; fetches figures where they are missing or old.
  void load();
  void unlockKeyring();
  void takeOverClientFile(const std::string& file);
  void signIn();
  void cancelSignIn();
  void dismissFailure();
  void openBrowserAgain();
  void signOut();
  void storeGoals(const velmora::Objectives& goals);
  void refresh();
  /// Shows a short message.
  void say(const std::string& message) const;

 private:
  struct Loaded;
  using Work = std::function<void()>;

  void changed() const;
  void take(const Loaded& loaded);
  void startSignIn(bool mayPrompt);
  void signInFinished(const SignInOutcome& outcome, bool mayPrompt);
  void storeLatestGoals();
  void waitForBrowser(const std::string& address);
  /// Runs work that writes. Asks the user once when the keyring is locked.
  void write(Work work, std::function<void(const std::string& problem)> done,
             bool mayPrompt = true);

  State state_;
  Listener listener_;
  std::unique_ptr<SignIn> signIn_;
  bool isHeld_ = false;
  bool isStoring_ = false;
  velmora::Objectives storedGoals_;
};

}  // namespace companion::window
