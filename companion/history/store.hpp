#pragma once

#include <optional>

#include "companion/history/history.hpp"

namespace companion {

/// The days that were kept, at least one; absent when there are none, when they are another
/// account's, or when they cannot be read, in which case the next ones take their place.
std::optional<History> loadHistory();

/// Keeps days in place of those before, whole or not at all, for the user alone. Throws
/// platform::FileError.
void saveHistory(const History& history);

/// Forgets the days; they belong to one user of one client. Returns whether none are left.
bool forgetHistory();

}  // namespace companion
