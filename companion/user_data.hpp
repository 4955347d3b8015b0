#pragma once

#include <string>

#include "VelmoraWidget/Objectives.hpp"

namespace companion {

/// Throws SignInError (keyringLocked, keyringMissing, keyringFailed) when nothing can be stored
/// now without asking the user. Waits for at most a few seconds.
void requireKeyring();

/// Stores the refresh token where the widget reads it, in place of every older one. Throws
/// SignInError.
void storeRefreshToken(const std::string& token);

/// The goals as stored. Unlike the widget's reading, this one throws SignInError when the keyring
/// cannot be read, so that nothing is overwritten by a default.
velmora::Objectives storedGoals();

/// Stores both goals, finite and above zero, where the widget reads them. Throws SignInError.
void storeGoals(const velmora::Objectives& goals);

/// Forgets the account and the figures, which belong to one user of one client.
void forgetFigures();

/// Withdraws the token at the provider, as far as it can be reached, then forgets the token, the
/// account and the figures. Nothing is wrong when nobody was signed in. Returns whether the
/// provider knows of it (true as well when there was nothing to withdraw). Throws SignInError when
/// the keyring cannot be read or written; then nothing has changed.
bool signOut();

}  // namespace companion
