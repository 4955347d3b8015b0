#pragma once

namespace desktop {

/// Gives back what starting up or drawing took, before a long wait: free heap memory, and the
/// pages of this program's code, which come back from its file as they are needed.
void giveBackMemory();

}  // namespace desktop
