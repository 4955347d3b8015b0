#pragma once

namespace platform {

/// Gives back what starting up, drawing or fetching took, before a long wait: free heap memory, and
/// the pages of the program's and its libraries' code, which come back from their files as they are
/// needed.
void giveBackMemory();

}  // namespace platform
