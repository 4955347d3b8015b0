#pragma once

#include <functional>

namespace companion::window {

/// Asks the user, with the keyring's own prompt, to unlock the default keyring, or to make one
/// where there is none. Returns at once; `done` is called from the main loop with whether it can
/// be used now. A prompt that is open is never cancelled from here: the user closes it.
void promptForKeyring(std::function<void(bool)> done);

}  // namespace companion::window
