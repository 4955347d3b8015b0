#pragma once

#include <optional>
#include <string>
#include <vector>

#include "VelmoraWidget/Objectives.hpp"
#include "companion/sign_in_error.hpp"

namespace companion {

/// Throws SignInError (keyringLocked, keyringMissing, keyringFailed) when nothing can be stored
/// now without asking the user. Waits for at most a few seconds.
void requireKeyring();

/// Throws SignInError (stateNotWritable) when nothing can be stored in the state folder now.
void requireState();

/// The refresh token; absent when nobody is signed in. Throws SignInError.
std::optional<std::string> storedToken();

/// Stores the refresh token where the widget reads it, in place of every older one. Throws
/// SignInError.
void storeRefreshToken(const std::string& token);

/// The goals as stored. Unlike the widget's reading, this one throws SignInError when the keyring
/// cannot be read, so that nothing is overwritten by a default.
velmora::Objectives storedGoals();

/// Stores both goals, finite and above zero, where the widget reads them. Throws SignInError.
void storeGoals(const velmora::Objectives& goals);

/// Whether that very token, or none, is stored; absent when the keyring does not say.
std::optional<bool> isStoredToken(const std::optional<std::string>& token);

/// The user-defaults keys of the account and the figures, which belong to one user of one client.
std::vector<std::string> figureKeys();

/// Forgets the account and the figures, those of an interrupted sign-in too. Throws SignInError
/// (figuresLeft).
void forgetFigures();

/// Throws SignInError (stateNotWritable).
[[noreturn]] void failToStore();

/// What came of a sign-out.
struct SignOutOutcome {
  /// Whether the token is gone at the provider; true as well when there was none.
  bool isWithdrawn = true;
  /// What is still on this machine, and why: the token (a keyring's failure) or else the figures.
  std::optional<SignInError> left;
};

/// Forgets the token, the account and the figures, and withdraws the token at the provider: each
/// as far as it can be, whatever came of the others.
SignOutOutcome tryToSignOut();

/// The same. Returns whether the token is gone at the provider. Throws SignInError when something
/// is left on this machine.
bool signOut();

}  // namespace companion
