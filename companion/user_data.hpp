#pragma once

#include <optional>
#include <string>

#include "VelmoraWidget/Objectives.hpp"

namespace companion {

/// Throws SignInError (keyringLocked, keyringMissing, keyringFailed) when nothing can be stored
/// now without asking the user. Waits for at most a few seconds.
void requireKeyring();

/// Throws SignInError (stateNotWritable) when the figures of a former user could not be forgotten.
void requireState();

/// Stores the refresh token where the widget reads it, in place of every older one. Throws
/// SignInError.
void storeRefreshToken(const std::string& token);

/// The goals as stored. Unlike the widget's reading, this one throws SignInError when the keyring
/// cannot be read, so that nothing is overwritten by a default.
velmora::Objectives storedGoals();

/// Stores both goals, finite and above zero, where the widget reads them. Throws SignInError.
void storeGoals(const velmora::Objectives& goals);

/// Whether that very token is the stored one; absent when the keyring does not say.
std::optional<bool> isStoredToken(const std::string& token);

/// Forgets the account and the figures, which belong to one user of one client. Throws SignInError
/// (stateNotWritable).
void forgetFigures();

/// Forgets the token, the account and the figures, and withdraws the token at the provider as far
/// as it can be reached. Nothing is wrong when nobody was signed in. Returns whether the
/// provider knows of it (true as well when there was nothing to withdraw). Throws SignInError when
/// the keyring cannot be read or written; then nothing has changed.
bool signOut();

}  // namespace companion
