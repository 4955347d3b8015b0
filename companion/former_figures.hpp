#pragma once

#include <string>
#include <vector>

namespace companion {

// A sign-in changes two stores, the keyring and the user defaults, and may be ended between them at
// any moment. So the account and the figures of the former user are put aside before the new token
// is stored: nobody sees them beside it, and while it is not stored, nothing of them is lost.

/// Puts the account and the figures aside, in one step, and keeps in mind whose they are. Throws
/// SignInError (stateNotWritable, or of the keyring), and then nothing has changed.
void putFiguresAside();

/// Afterwards: brings back what was put aside if it belongs to the token that is stored now, and
/// else forgets it. While the keyring cannot be read, it stays aside. Does nothing when nothing
/// is, so that every program can begin with it: a sign-in may have been killed.
void settleFigures();

/// The user-defaults keys of what is aside.
std::vector<std::string> asideKeys();

}  // namespace companion
