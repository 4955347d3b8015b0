#pragma once

#include <functional>
#include <optional>

#include "companion/sign_in_error.hpp"

namespace companion::window {

/// Runs work that needs the keyring beside the main loop. When the keyring is locked, or there is
/// none yet, the user is asked, and the work is tried once more. The process stays until `done` was
/// called, from the main loop, with the error that is left.
void runWithKeyring(std::function<void()> work,
                    std::function<void(const std::optional<SignInError>&)> done);

}  // namespace companion::window
